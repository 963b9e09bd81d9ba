#include "src/plugins/templateplugin/custom_simple_logger.h"

#include <gtest/gtest.h>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

const char kLogFile[] = "zanther_gripper_log.log";

std::mutex g_received_mutex;
// "<type> <message>" of each message the handler got; read once the writers are done.
std::vector<std::string> g_received;

void record_message(QtMsgType type, const QMessageLogContext&, const QString& message) {
    std::lock_guard<std::mutex> lock(g_received_mutex);
    g_received.push_back(std::to_string(type) + " " + message.toStdString());
}

// The lines of the log file; every line must end with "\r\n" and hold no other line break.
QStringList log_lines() {
    QFile file(QString::fromLatin1(kLogFile));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << "no log file";
    const QByteArray content = file.readAll();
    EXPECT_TRUE(content.endsWith("\r\n"));
    EXPECT_EQ(content.count('\n'), content.count("\r\n"));
    EXPECT_EQ(content.count('\r'), content.count("\r\n"));
    QStringList lines = QString::fromUtf8(content).split(QStringLiteral("\r\n"));
    lines.removeLast();
    return lines;
}

// Splits a log line into its time (1), tag (2) and message (3); fails when it has another form.
QRegularExpressionMatch parse(const QString& line) {
    static const QRegularExpression form(QStringLiteral(
        "^(\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2}) (\\[DEBUG\\]|\\[WARN\\]|\\[ERROR\\]|"
        "Fatal:|\\[INFO\\]|) - (.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    EXPECT_TRUE(match.hasMatch()) << line.toStdString();
    return match;
}

void write_message(QtMsgType type, const QString& message) {
    outputMessage(type, QMessageLogContext(), message);
}

// Every test runs in its own empty directory, since the log file lies in the current one, and
// starts and ends with no back end, no handler of ours and no previous handler kept.
class QtLoggingTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir_.isValid());
        previous_dir_ = QDir::currentPath();
        ASSERT_TRUE(QDir::setCurrent(dir_.path()));
        reset_logging();
    }

    void TearDown() override {
        reset_logging();
        QDir::setCurrent(previous_dir_);
    }

    static void reset_logging() {
        register_simple_logger(nullptr);
        qInstallMessageHandler(nullptr);
        g_default_qt_message_halder_ = nullptr;
        std::lock_guard<std::mutex> lock(g_received_mutex);
        g_received.clear();
    }

    QTemporaryDir dir_;
    QString previous_dir_;
};

// simple_logger's call becomes one quoted debug message. Each message is written as one line
// with the local time and the tag of its type, and handed on to the handler installed before the
// first install, a fatal one too, and the process goes on.
TEST_F(QtLoggingTest, WritesEachMessageAsOneLineAndHandsItOnToThePreviousHandler) {
    qInstallMessageHandler(record_message);
    install_gripper_logging();
    install_gripper_logging();
    EXPECT_EQ(&record_message, g_default_qt_message_halder_);
    const std::string long_text(100000, 'y');
    const QDateTime now = QDateTime::currentDateTime();
    const QDateTime before = now.addMSecs(-now.time().msec());

    const unsigned int line = __LINE__ + 1;
    GRIPPER_LOG("W", "count = %d, name = %s, %s", 7, "gripper", long_text.c_str());
    write_message(QtDebugMsg, QStringLiteral("keeps %1 and %2 as written"));
    qWarning("warned %d", 5);
    write_message(QtFatalMsg, QStringLiteral("fatal, yet the process goes on"));
    write_message(QtCriticalMsg, QStringLiteral("critical"));
    write_message(QtInfoMsg, QStringLiteral("info"));
    write_message(static_cast<QtMsgType>(QtInfoMsg + 1), QStringLiteral("of no known type"));

    const QDateTime after = QDateTime::currentDateTime();
    const std::string text = "\"W_" + std::string(__FILE__) + "_" + std::to_string(line) +
                             ":count = 7, name = gripper, " + long_text + "\"";
    // Debug, warning, critical, fatal and information messages are types 0 to 4.
    EXPECT_EQ((std::vector<std::string>{"0 " + text, "0 keeps %1 and %2 as written", "1 warned 5",
                                        "3 fatal, yet the process goes on", "2 critical", "4 info",
                                        "5 of no known type"}),
              g_received);
    const QStringList lines = log_lines();
    ASSERT_EQ(7, lines.size());
    const QDateTime time =
        QDateTime::fromString(parse(lines[0]).captured(1), "yyyy/MM/dd hh:mm:ss");
    EXPECT_LE(before, time);
    EXPECT_GE(after, time);
    const QStringList tags{"[DEBUG]", "[DEBUG]", "[WARN]", "Fatal:", "[ERROR]", "[INFO]", ""};
    for (int i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(tags[i], parse(lines[i]).captured(2)) << lines[i].toStdString();
        EXPECT_EQ(g_received[i].substr(2), parse(lines[i]).captured(3).toStdString());
    }
}

// Lines of 8 KiB from several threads: 1280 fill a file to the limit, which is kept; the next
// passes it and the file goes, so 4000 lines leave 4000 % 1281 in the last file however the
// threads took turns. No line is torn, and the previous handler gets every line.
TEST_F(QtLoggingTest, LinesFromSeveralThreadsStayWholeAndTheFileGoesOncePastTenMebibytes) {
    qInstallMessageHandler(record_message);
    install_gripper_logging();
    const int threads = 8, per_thread = 500;
    const QString padding(8192 - 32 - 18, QLatin1Char('p'));  // time, tag, "\r\n"; "thread ..."
    std::vector<std::thread> writers;
    for (int t = 0; t < threads; ++t) {
        writers.emplace_back([t, &padding] {
            for (int n = 0; n < per_thread; ++n) {
                write_message(QtDebugMsg,
                              QString::asprintf("thread %d line %03d ", t, n) + padding);
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }

    const QStringList lines = log_lines();
    ASSERT_EQ(threads * per_thread % 1281, lines.size());
    EXPECT_EQ(lines.size() * 8192, QFileInfo(kLogFile).size());
    static const QRegularExpression form(QStringLiteral("^thread [0-7] line \\d{3} p+$"));
    for (const QString& line : lines) {
        EXPECT_EQ(QStringLiteral("[DEBUG]"), parse(line).captured(2));
        EXPECT_TRUE(form.match(parse(line).captured(3)).hasMatch()) << line.toStdString();
    }
    EXPECT_EQ(static_cast<size_t>(threads * per_thread), g_received.size());
}

}  // namespace
