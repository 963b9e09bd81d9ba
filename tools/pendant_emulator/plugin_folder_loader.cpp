#include "tools/pendant_emulator/plugin_folder_loader.h"

#include <QDir>
#include <QJsonObject>
#include <QPluginLoader>

#include "platform/iplugin.h"
#include "platform/pluginmanager.h"

const char* const PluginFolderLoader::PLUGIN_IID = "com.qt-project.Orla.TeachPendantPlugin";

void PluginFolderLoader::load_folder(const QString& folder) {
    const QDir dir(folder);
    if (!dir.exists()) {
        fail(folder, "the plug-in folder does not exist");
        return;
    }
    const QStringList files = dir.entryList(QDir::Files, QDir::Name);
    for (const QString& file : files) {
        load_file(dir.absoluteFilePath(file));
    }
}

void PluginFolderLoader::load_file(const QString& path) {
    QPluginLoader loader(path);
    const QJsonObject meta = loader.metaData();
    if (meta.isEmpty()) {
        // Loading reports the loader's own reason (not a library, no plug-in metadata, ...).
        loader.load();
        fail(path, loader.errorString());
        return;
    }
    const QString iid = meta.value("IID").toString();
    const QJsonObject data = meta.value("MetaData").toObject();
    LoadedPlugin loaded{path, data.value("Name").toString(), data.value("Version").toString(),
                        data.value("Category").toString(), nullptr};
    if (iid != PLUGIN_IID) {
        fail(path, QString("interface id \"%1\" is not \"%2\"").arg(iid, PLUGIN_IID));
        return;
    }
    if (loaded.name.isEmpty() || loaded.version.isEmpty()) {
        fail(path, "the metadata has no Name or no Version");
        return;
    }
    if (ExtensionSystem::PluginManager::getObjectByName(loaded.name) != nullptr) {
        fail(path, QString("a plug-in named \"%1\" is loaded already").arg(loaded.name));
        return;
    }
    QObject* instance = loader.instance();
    if (instance == nullptr) {
        fail(path, loader.errorString());
        return;
    }
    loaded.plugin = qobject_cast<ExtensionSystem::IPlugin*>(instance);
    if (loaded.plugin == nullptr) {
        fail(path, QString("%1 is not an ExtensionSystem::IPlugin")
                       .arg(instance->metaObject()->className()));
        loader.unload();
        return;
    }
    instance->setObjectName(loaded.name);
    ExtensionSystem::PluginManager::addObject(instance);
    plugins_.append(loaded);
}

void PluginFolderLoader::fail(const QString& path, const QString& reason) {
    failures_.append({path, reason});
}
