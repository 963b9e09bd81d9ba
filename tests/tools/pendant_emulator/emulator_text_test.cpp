// The emulator's texts: script lines, program files and the command line. Transcript lines are in
// the program panel's test and the tour.

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tools/pendant_emulator/emulator_options.h"
#include "tools/pendant_emulator/program_file.h"
#include "tools/pendant_emulator/script_line.h"

// Rows without a plug-in are refused: the error begins with their text, the line stays alone.
TEST(ScriptLine, ReadsTheCallsAScriptEngineRunsAndRefusesOtherText) {
    const char* const not_a_call =
        "not a call script_common_interface(\"<plug-in>\", \"<command>\")";
    const struct {
        QString text;
        const char* plugin;
        const char* command_or_error;
    } rows[] = {
        {"  script_common_interface ( \"Zanther2F\" ,\"gripper_scan\" ) ; ", "Zanther2F",
         "gripper_scan"},
        {"script_common_interface(\"A \\\"B\\\"\", \"x\\\\y\")", "A \"B\"", "x\\y"},
        {"script_common_interface(\"Zanther2F\", \"\")", "Zanther2F", ""},
        {QString::fromUtf8(
             "script_common_interface(\"Zanther2F\", \"gripper_isConnect|\xc3\xa9\")"),
         "Zanther2F", "gripper_isConnect|\xc3\xa9"},
        {"gripper_scan", nullptr, not_a_call},
        {"script_common_interface(Zanther2F, gripper_scan)", nullptr, not_a_call},
        {"script_common_interface(\"Zanther2F\", \"gripper_scan\"", nullptr, not_a_call},
        {"script_common_interface(\"Zanther2F\", \"a\") trailing", nullptr, not_a_call},
        {"script_common_interface(\"Zanther2F\", \"" + QString(10000, 'x') + "\"", nullptr,
         not_a_call},
        {"script_common_interface(\" \", \"gripper_scan\")", nullptr, "the plug-in name is empty"},
    };
    for (const auto& row : rows) {
        const std::string text = row.text.left(80).toStdString();
        ScriptLine line{"unchanged", "unchanged"}, again;
        QString error;
        ASSERT_EQ(row.plugin != nullptr, ScriptLine::parse(row.text, line, error)) << text;
        if (row.plugin == nullptr) {
            EXPECT_EQ(QString::fromUtf8(row.command_or_error), error) << text;
            EXPECT_EQ("unchanged", line.plugin_name);
            continue;
        }
        EXPECT_EQ(QString::fromUtf8(row.plugin), line.plugin_name) << text;
        EXPECT_EQ(QString::fromUtf8(row.command_or_error), line.command) << text;
        EXPECT_TRUE(ScriptLine::parse(line.text(), again, error) &&
                    line.plugin_name == again.plugin_name && line.command == again.command)
            << "round trip of " << text;
    }
}

// Saved steps are read back in the window's test and the tour; here what is refused, whole.
TEST(ProgramFile, NamesWhatIsWrongAndReturnsNoStep) {
    const QVector<StoredStep> steps{{"Zanther2F", "Zanther2F_1", "{}"}};
    QVector<StoredStep> read;
    QString error;
    QTemporaryDir folder;
    EXPECT_FALSE(ProgramFile::read(folder.filePath("missing.json"), read, error));
    EXPECT_TRUE(error.startsWith("cannot read")) << qPrintable(error);
    EXPECT_FALSE(ProgramFile::write(folder.filePath("no/such/folder/p.json"), steps, error));
    EXPECT_TRUE(error.startsWith("cannot write")) << qPrintable(error);

    const QString head = "{\"format\": \"pendant-emulator program\", \"version\": 1, ";
    const struct {
        QString json;
        const char* error;
    } rows[] = {
        {"{\"format\": ", "not JSON: "},
        {"[1, 2]", "the document is not a JSON object"},
        {"{\"format\": \"other\", \"version\": 1, \"steps\": []}", "\"format\" is not"},
        {"{\"format\": \"pendant-emulator program\", \"version\": 2, \"steps\": []}",
         "version 2 is not 1"},
        {head + "\"steps\": {}}", "\"steps\" is not a list"},
        {head + "\"steps\": [{\"type\": \"A\", \"json\": \"{}\"}, 7]}", "step 2 is not"},
        {head + "\"steps\": [{\"type\": \"A\", \"alias\": 3, \"json\": \"{}\"}]}", "step 1 is not"},
        {head + "\"steps\": [{\"type\": \"A\", \"json\": {}}]}", "step 1 is not"},
        {head + "\"steps\": [{\"type\": \"\", \"json\": \"{}\"}]}", "step 1 has an empty type"},
    };
    for (const auto& row : rows) {
        QVector<StoredStep> kept{{"kept", "kept", "kept"}};
        EXPECT_FALSE(ProgramFile::from_json(row.json.toUtf8(), kept, error))
            << qPrintable(row.json);
        EXPECT_TRUE(error.startsWith(row.error)) << qPrintable(error);
        ASSERT_EQ(1, kept.size());
        EXPECT_EQ("kept", kept[0].type);
    }
}

// --tour is in the tour's test; --plugins, --no-simulators and --language in the window's test.
TEST(EmulatorOptions, ReadsEveryOptionAndRefusesBadValues) {
    const QStringList base{"pendant-emulator", "--plugins", "/p", "--simulator", "/s"};
    EmulatorOptions options;
    QString error;
    ASSERT_TRUE(EmulatorOptions::parse(
        base + QStringList{"--resolution", "1280x800", "--usb", "/dev/ttyUSB0", "--tcp",
                           "192.168.1.29:8888", "--keep-open"},
        options, error))
        << qPrintable(error);
    EXPECT_EQ(QSize(1280, 800), options.resolution);
    EXPECT_EQ("/dev/ttyUSB0", options.usb_device);
    EXPECT_EQ("192.168.1.29:8888", options.tcp_address);
    EXPECT_TRUE(options.keep_open);

    const struct {
        QStringList arguments;
        const char* error;
    } rows[] = {
        {{"--resolution", "big"}, "--resolution big is not WIDTHxHEIGHT"},
        {{"--tcp", "192.168.1.29"}, "--tcp 192.168.1.29 is not HOST:PORT"},
        {{"--tcp", "host:70000"}, "--tcp host:70000 is not HOST:PORT"},
        {{"--tour", "/a", "--screenshot", "/b.png"}, "--tour and --screenshot exclude each other"},
        {{"extra"}, "unexpected argument extra"},
        {{"--nonsense"}, "Unknown option 'nonsense'."},
    };
    for (const auto& row : rows) {
        EmulatorOptions refused;
        EXPECT_FALSE(EmulatorOptions::parse(base + row.arguments, refused, error));
        EXPECT_EQ(row.error, error);
    }
}
