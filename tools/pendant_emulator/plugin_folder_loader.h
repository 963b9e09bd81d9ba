#ifndef TOOLS_PENDANT_EMULATOR_PLUGIN_FOLDER_LOADER_H
#define TOOLS_PENDANT_EMULATOR_PLUGIN_FOLDER_LOADER_H

#include <QString>
#include <QVector>

namespace ExtensionSystem {
class IPlugin;
}

// A plug-in the pendant accepted: its metadata and its object, named after the metadata Name
// and in the plug-in manager's pool.
struct LoadedPlugin {
    QString file;
    QString name;
    QString version;
    QString category;
    ExtensionSystem::IPlugin* plugin = nullptr;
};

// A file of the plug-in folder that the pendant passed over, and why.
struct LoadFailure {
    QString file;
    QString reason;
};

// Loads every file of a plug-in folder as the pendant does: reads its plug-in metadata through
// QPluginLoader, checks the interface id, Name and Version, creates the object, checks that it is
// an ExtensionSystem::IPlugin, names it after its metadata Name and adds it to the plug-in
// manager. A file that fails any step is reported with the reason and the others go on.
class PluginFolderLoader {
public:
    static const char* const PLUGIN_IID;

    // Files in name order; sub-folders are not entered.
    void load_folder(const QString& folder);

    const QVector<LoadedPlugin>& plugins() const { return plugins_; }
    const QVector<LoadFailure>& failures() const { return failures_; }

private:
    void load_file(const QString& path);
    void fail(const QString& path, const QString& reason);

    QVector<LoadedPlugin> plugins_;
    QVector<LoadFailure> failures_;
};

#endif
