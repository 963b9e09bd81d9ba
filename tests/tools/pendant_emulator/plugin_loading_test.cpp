// Loading a plug-in folder as the pendant does: the gripper plug-in loads and shows its page
// while a library made for another application, a library that is no plug-in and a file that
// is no library are reported with their reasons. The plug-in comes from its file; nothing of it is
// linked in.

#include <QFile>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QtTest>

#include "platform/iplugin.h"
#include "platform/pluginmanager.h"
#include "tools/pendant_emulator/bench_page.h"
#include "tools/pendant_emulator/emulator_window.h"
#include "tools/pendant_emulator/language_catalogue.h"
#include "tools/pendant_emulator/plugin_folder_loader.h"
#include "tools/pendant_emulator/private_settings.h"

class PluginLoadingTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void window_loads_the_gripper_plugin_and_reports_the_others();
    void a_second_plugin_or_a_missing_folder_is_reported();
    void language_catalogues_come_from_the_plugins_resources();

private:
    PrivateSettings settings_;
    QTemporaryDir folder_;
};

void PluginLoadingTest::initTestCase() {
    QVERIFY(settings_.valid());
    QVERIFY(folder_.isValid());
    QVERIFY(QFile::link(ZANTHER2F_LIBRARY, folder_.filePath("libZanther2F.so")));
    QVERIFY(QFile::copy(WRONG_IID_LIBRARY, folder_.filePath("libImageFilter.so")));
    QVERIFY(QFile::copy(HELPER_LIBRARY, folder_.filePath("libHelper.so")));
    QFile notes(folder_.filePath("notes.so"));
    QVERIFY(notes.open(QIODevice::WriteOnly));
    notes.write("These are notes, not a library.\n");
    notes.close();
    QVERIFY(QDir(folder_.path()).mkdir("sub"));
}

void PluginLoadingTest::window_loads_the_gripper_plugin_and_reports_the_others() {
    EmulatorOptions options;
    options.plugin_folder = folder_.path();
    options.simulators = false;
    EmulatorWindow window(options);
    QVERIFY(window.start_grippers(QString()));
    window.load_plugins(folder_.filePath("shared"));

    const QVector<LoadedPlugin>& plugins = window.loader().plugins();
    QCOMPARE(plugins.size(), 1);
    QCOMPARE(plugins[0].name, QString("Zanther2F"));
    QCOMPARE(plugins[0].version, QString("4.2.6"));
    QVERIFY(plugins[0].category.contains("Programming/Condition"));
    QCOMPARE(plugins[0].plugin->objectName(), QString("Zanther2F"));
    QCOMPARE(ExtensionSystem::PluginManager::getObjectByName("Zanther2F"),
             static_cast<QObject*>(plugins[0].plugin));

    QCOMPARE(window.loader().failures().size(), 3);
    QMap<QString, QString> reasons;
    for (const LoadFailure& failure : window.loader().failures()) {
        reasons[QFileInfo(failure.file).fileName()] = failure.reason;
    }
    QCOMPARE(reasons["libImageFilter.so"],
             QString("interface id \"org.example.ImageFilterPlugin\" is not "
                     "\"com.qt-project.Orla.TeachPendantPlugin\""));
    const QString not_library = reasons["notes.so"];
    QVERIFY2(not_library.contains("notes.so") && not_library.contains("not an ELF object"),
             qPrintable(not_library));
    const QString not_plugin = reasons["libHelper.so"];
    QVERIFY2(not_plugin.contains("libHelper.so") &&
                 not_plugin.contains("Failed to extract plugin meta data"),
             qPrintable(not_plugin));

    QTabWidget& tabs = window.tabs();
    QCOMPARE(tabs.count(), 4);
    QCOMPARE(tabs.tabText(0), QString("Zanther2F"));
    QVERIFY(window.plugin_page("Zanther2F")->findChild<QTabWidget*>("tab_widget_") != nullptr);
    const QString report = window.bench().report();
    QVERIFY2(report.contains("Not loaded: " + folder_.filePath("notes.so")), qPrintable(report));
    QVERIFY(report.contains("Not loaded: " + folder_.filePath("libImageFilter.so")));
    QVERIFY(report.contains("Loaded: Zanther2F 4.2.6"));
    QVERIFY(report.contains("Grippers: none on the bench"));
}

// A second plug-in of a loaded name and a missing folder load nothing, each with its reason.
void PluginLoadingTest::a_second_plugin_or_a_missing_folder_is_reported() {
    QTemporaryDir second;
    QVERIFY(QFile::link(ZANTHER2F_LIBRARY, second.filePath("libZanther2F-copy.so")));
    const QString rows[][2] = {
        {second.path(), "a plug-in named \"Zanther2F\" is loaded already"},
        {folder_.filePath("absent"), "the plug-in folder does not exist"},
    };
    for (const auto& row : rows) {
        PluginFolderLoader loader;
        loader.load_folder(row[0]);
        QVERIFY(loader.plugins().isEmpty());
        QCOMPARE(loader.failures().size(), 1);
        QCOMPARE(loader.failures()[0].reason, row[1]);
    }
}

void PluginLoadingTest::language_catalogues_come_from_the_plugins_resources() {
    QString error;
    LanguageCatalogue chinese;
    QVERIFY2(chinese.install("zh_CN", error), qPrintable(error));
    QCOMPARE(chinese.file(), QString(":/Translations/zh_CN_template_plugin.qm"));
    QCOMPARE(QCoreApplication::translate("gripper_peripheral_condition", "Position"),
             QString::fromUtf8("\xe4\xbd\x8d\xe7\xbd\xae"));
    LanguageCatalogue unknown;
    QVERIFY(!unknown.install("xx", error));
    QCOMPARE(error, QString("no catalogue xx_*.qm in the plug-ins' resources"));
    QVERIFY(!unknown.install(folder_.filePath("missing.qm"), error));
    QCOMPARE(error, "the catalogue " + folder_.filePath("missing.qm") + " does not load");
}

QTEST_MAIN(PluginLoadingTest)
#include "plugin_loading_test.moc"
