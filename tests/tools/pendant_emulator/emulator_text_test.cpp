// The emulator's texts: script lines, program files, transcript lines and the command line.

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "tools/pendant_emulator/emulator_options.h"
#include "tools/pendant_emulator/program_file.h"
#include "tools/pendant_emulator/script_line.h"
#include "tools/pendant_emulator/transcript.h"

TEST(ScriptLine, ReadsTheCallsAScriptEngineRuns) {
    const struct {
        const char* text;
        const char* plugin;
        const char* command;
    } rows[] = {
        {"script_common_interface(\"Zanther2F\", \"set_2_finger_gripper_param|1, 500, 50, 80, "
         "true\")",
         "Zanther2F", "set_2_finger_gripper_param|1, 500, 50, 80, true"},
        {"  script_common_interface ( \"Zanther2F\" ,\"gripper_scan\" ) ; ", "Zanther2F",
         "gripper_scan"},
        {"script_common_interface(\"A \\\"B\\\"\", \"x\\\\y\")", "A \"B\"", "x\\y"},
        {"script_common_interface(\"Zanther2F\", \"\")", "Zanther2F", ""},
        {"script_common_interface(\"Zanther2F\", \"gripper_isConnect|\xc3\xa9\")", "Zanther2F",
         "gripper_isConnect|\xc3\xa9"},
    };
    for (const auto& row : rows) {
        ScriptLine line, again;
        QString error;
        EXPECT_TRUE(ScriptLine::parse(QString::fromUtf8(row.text), line, error)) << row.text;
        EXPECT_EQ(QString::fromUtf8(row.plugin), line.plugin_name) << row.text;
        EXPECT_EQ(QString::fromUtf8(row.command), line.command) << row.text;
        EXPECT_TRUE(ScriptLine::parse(line.text(), again, error) && line.command == again.command)
            << "round trip of " << row.text;
    }
}

TEST(ScriptLine, RefusesOtherTextAndLeavesTheLineAlone) {
    const QString long_line =
        "script_common_interface(\"Zanther2F\", \"" + QString(10000, 'x') + "\"";
    for (const QString& text :
         {QString("gripper_scan"), QString("script_common_interface(Zanther2F, gripper_scan)"),
          QString("script_common_interface(\"Zanther2F\")"),
          QString("script_common_interface(\"Zanther2F\", \"gripper_scan\""),
          QString("other_function(\"Zanther2F\", \"gripper_scan\")"),
          QString("script_common_interface(\"Zanther2F\", \"a\") trailing"), long_line,
          QString()}) {
        ScriptLine line{"unchanged", "unchanged"};
        QString error;
        EXPECT_FALSE(ScriptLine::parse(text, line, error)) << text.left(80).toStdString();
        EXPECT_TRUE(error.startsWith("not a call script_common_interface")) << error.toStdString();
        EXPECT_EQ("unchanged", line.plugin_name);
    }
    ScriptLine line;
    QString error;
    EXPECT_FALSE(
        ScriptLine::parse("script_common_interface(\" \", \"gripper_scan\")", line, error));
    EXPECT_EQ("the plug-in name is empty", error);
}

TEST(ProgramFile, KeepsTypeAliasAndJsonTextOfEveryStep) {
    const QVector<StoredStep> steps{
        {"Zanther2F", "Zanther2F_1",
         "{\"DeviceID\":\"1\",\"Force\":50,\"IsBlock\":true,\"PluginName\":\"Zanther2F\","
         "\"Position\":100,\"Speed\":80}"},
        {"Zanther2F", QString::fromUtf8("\xe5\xa4\xb9\xe7\x88\xaa"), "not even JSON \"\\"},
    };
    QVector<StoredStep> read;
    QString error;
    QTemporaryDir folder;
    const QString path = folder.filePath("program.json");
    ASSERT_TRUE(ProgramFile::write(path, steps, error)) << qPrintable(error);
    ASSERT_TRUE(ProgramFile::read(path, read, error)) << qPrintable(error);
    ASSERT_EQ(2, read.size());
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(steps[i].type, read[i].type);
        EXPECT_EQ(steps[i].alias, read[i].alias);
        EXPECT_EQ(steps[i].json, read[i].json);
    }
    EXPECT_FALSE(ProgramFile::read(folder.filePath("missing.json"), read, error));
    EXPECT_TRUE(error.startsWith("cannot read")) << qPrintable(error);
    EXPECT_FALSE(ProgramFile::write(folder.filePath("no/such/folder/p.json"), steps, error));
    EXPECT_TRUE(error.startsWith("cannot write")) << qPrintable(error);
}

TEST(ProgramFile, NamesWhatIsWrongAndReturnsNoStep) {
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
        QVector<StoredStep> steps{{"kept", "kept", "kept"}};
        QString error;
        EXPECT_FALSE(ProgramFile::from_json(row.json.toUtf8(), steps, error))
            << qPrintable(row.json);
        EXPECT_TRUE(error.startsWith(row.error)) << qPrintable(error);
        ASSERT_EQ(1, steps.size());
        EXPECT_EQ("kept", steps[0].type);
    }
}

TEST(Transcript, ShowsEachCommandWithWhatItReturnedAndAnswered) {
    ScriptResult result;
    result.line = {"Zanther2F", "get_gripper_status|1"};
    result.returned = true;
    result.answer = "i | 2";
    result.started_ms = 12344;
    result.finished_ms = 12345;
    EXPECT_EQ("[  12.345] Zanther2F: get_gripper_status|1 -> true \"i | 2\" (1 ms)",
              Transcript::format(result));
    result.returned = false;
    result.answer = "i | 0";
    EXPECT_EQ("[  12.345] Zanther2F: get_gripper_status|1 -> false \"i | 0\" (1 ms)",
              Transcript::format(result));
    result.line.plugin_name = "Foo";
    result.error = "no plug-in named \"Foo\" is loaded";
    EXPECT_EQ("[  12.345] Foo: get_gripper_status|1 -> not run: no plug-in named \"Foo\" is loaded",
              Transcript::format(result));
}

TEST(EmulatorOptions, ReadsEveryOptionAndRefusesBadValues) {
    const QStringList base{"pendant-emulator", "--plugins", "/p", "--simulator", "/s"};
    EmulatorOptions options;
    QString error;
    ASSERT_TRUE(EmulatorOptions::parse(
        base + QStringList{"--resolution", "1280x800", "--language", "zh_CN", "--usb",
                           "/dev/ttyUSB0", "--tcp", "192.168.1.29:8888", "--tour", "/tmp/t",
                           "--keep-open"},
        options, error))
        << qPrintable(error);
    EXPECT_EQ(QSize(1280, 800), options.resolution);
    EXPECT_EQ("/p", options.plugin_folder);
    EXPECT_EQ("zh_CN", options.language);
    EXPECT_EQ("/dev/ttyUSB0", options.usb_device);
    EXPECT_EQ("192.168.1.29:8888", options.tcp_address);
    EXPECT_EQ("/tmp/t", options.tour_folder);
    EXPECT_TRUE(options.keep_open);
    EXPECT_TRUE(options.simulators);

    EmulatorOptions star;
    ASSERT_TRUE(EmulatorOptions::parse(
        base + QStringList{"--resolution", "1024*768", "--no-simulators"}, star, error));
    EXPECT_EQ(QSize(1024, 768), star.resolution);
    EXPECT_FALSE(star.simulators);

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
