#ifndef EXTENSIONSYSTEM_IPLUGIN_H
#define EXTENSIONSYSTEM_IPLUGIN_H

#include <QObject>
#include <QString>

class QWidget;

namespace ExtensionSystem {

// The base of every plug-in object the pendant loads: program lifecycle hooks, the script command
// entry, the page and the edit switch. The pendant calls these slots on its interface thread,
// except pluginCommonInterface, which its script thread calls.
class IPlugin : public QObject {
    Q_OBJECT

public:
    explicit IPlugin(QObject* parent = nullptr);
    virtual ~IPlugin();

public slots:
    virtual bool pluginCommonInterface(const QString& in, QString& out) = 0;
    virtual bool initParms() = 0;
    virtual bool pausePlugin() = 0;
    virtual bool continuePlugin() = 0;
    virtual bool stopPlugin() = 0;
    virtual QWidget* createUI(QWidget* parent) = 0;
    virtual void setPluginSharedFilePath(const QString& path) = 0;
    virtual void setPluginMessageBoxParentWidget(QWidget* parent) = 0;
    virtual void loadTranslator(const QString& language) = 0;
    virtual void enableEdit(const bool& enable) = 0;
};

}  // namespace ExtensionSystem

#endif
