// The emulator's tour as `make demo` runs it: the emulator program on the offscreen platform,
// the real plug-in from the plug-in folder, two simulated grippers in child processes. Every
// stage passes, the transcript holds the answers each command must give, and every picture
// shows something.

#include <gtest/gtest.h>

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include "tests/test_support/child_process.h"
#include "tools/pendant_emulator/program_file.h"
#include "tools/pendant_emulator/screenshot.h"

namespace {

const int STAGES = 11;

QStringList transcript_lines(const QString& folder) {
    QFile file(folder + "/transcript.txt");
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).split('\n');
}

// Lines holding text: a command with its answer (the time it took follows), or a note.
int count_holding(const QStringList& lines, const QString& text) {
    int count = 0;
    for (const QString& line : lines) {
        count += line.contains(text) ? 1 : 0;
    }
    return count;
}

}  // namespace

TEST(PendantEmulatorTour, EveryStagePassesWithItsAnswersAndPictures) {
    QTemporaryDir folder;
    ChildProcess emulator(PENDANT_EMULATOR, {"--tour", folder.path().toStdString()});
    std::vector<std::string> output;
    for (std::string line = emulator.read_line(std::chrono::seconds(60)); !line.empty();
         line = emulator.read_line(std::chrono::seconds(60))) {
        output.push_back(line);
    }
    ASSERT_EQ(0, emulator.wait_exit(std::chrono::seconds(30)));
    ASSERT_EQ(static_cast<std::size_t>(STAGES + 1), output.size());
    for (int stage = 1; stage <= STAGES; ++stage) {
        EXPECT_EQ(0u, output[stage - 1].find("ok      Stage " + std::to_string(stage) + ":"))
            << output[stage - 1];
    }
    EXPECT_EQ("Tour passed: pictures and transcript in " + folder.path().toStdString(),
              output.back());

    const QStringList lines = transcript_lines(folder.path());
    const struct {
        const char* text;
        int count;
    } answers[] = {
        {"gripper_scan -> true \"i | 0\"", 1},
        {"gripper_isConnect|1 -> true \"i | 1\"", 1},
        {"gripper_isConnect|2 -> true \"i | 1\"", 3},
        {"gripper_isActivate|1 -> true \"i | 1\"", 1},
        {"gripper_isActivate|2 -> true \"i | 1\"", 2},
        {"message box: Information: Condition saved.", 2},
        {"set_2_finger_gripper_param|1, 100, 50, 80, true -> true \"i | 0\"", 2},
        {"set_2_finger_gripper_param|1, 0, 50, 80, true -> true \"i | 0\"", 1},
        {"program: Program ended: completed", 1},
        {"program: Program ended: stopped at line 1", 1},
        {"get_gripper_status|1 -> true \"i | 1\"", 1},
        {"get_gripper_position|1 -> true \"i|0\"", 1},
        {"get_gripper_status|1 -> true \"i | 2\"", 1},
        {"gripper_isDrop|1 -> true \"i | 1\"", 1},
        {"get_gripper_status|1 -> true \"i | 3\"", 1},
        {"gripper_isConnect|2 -> true \"i | 0\"", 3},
        {"gripper_isConnect|1 -> true \"i | 0\"", 1},
        {"== Tour passed", 1},
    };
    for (const auto& answer : answers) {
        EXPECT_EQ(answer.count, count_holding(lines, QString::fromUtf8(answer.text)))
            << answer.text;
    }
    for (const QString& line : lines) {
        EXPECT_FALSE(line.contains(" -> false ") || line.contains(" -> not run: "))
            << qPrintable(line);
    }
    for (const char* name :
         {"01-page", "02-connected", "03-activated", "03-activated-zh_CN", "04-editor",
          "05-program", "06-running-paused", "07-page-while-running", "08-stopped", "09-dropped",
          "10-link-lost", "10-reconnecting", "11-reopened", "12-script-console", "13-emulator"}) {
        const QImage picture(folder.filePath(QString(name) + ".png"));
        ASSERT_FALSE(picture.isNull()) << name;
        EXPECT_FALSE(Screenshot::blank(picture)) << name;
        if (QString(name) != "04-editor") {
            EXPECT_EQ(QSize(1024, 768), picture.size()) << name;
        }
    }
    QVector<StoredStep> steps;
    QString error;
    ASSERT_TRUE(ProgramFile::read(folder.filePath("tour-program.json"), steps, error))
        << qPrintable(error);
    EXPECT_EQ(2, steps.size());
}
