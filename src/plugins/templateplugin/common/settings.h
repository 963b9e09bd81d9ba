#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_SETTINGS_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_SETTINGS_H

#include <QSettings>

// The pendant's own settings store; the plug-in only reads it.
class Settings : public QSettings {
    Q_OBJECT

public:
    explicit Settings(QObject* parent = nullptr);
};

#endif
