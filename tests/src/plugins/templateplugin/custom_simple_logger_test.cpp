#include "src/plugins/templateplugin/custom_simple_logger.h"

#include <gtest/gtest.h>
#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringList>
#include <QTemporaryDir>

#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

const char kLogFile[] = "zanther_gripper_log.log";
const qint64 kLogFileMaxSize = 10485760;

std::mutex g_received_mutex;
std::vector<std::string> g_received;  // "<type> <message>" of each message the handler got
std::string g_context;                // "<category> <file>:<line>" of the last one

void record_message(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    std::lock_guard<std::mutex> lock(g_received_mutex);
    g_received.push_back(std::to_string(type) + " " + message.toStdString());
    g_context = QStringLiteral("%1 %2:%3")
                    .arg(QString::fromUtf8(context.category), QString::fromUtf8(context.file))
                    .arg(context.line)
                    .toStdString();
}

std::vector<std::string> received() {
    std::lock_guard<std::mutex> lock(g_received_mutex);
    return g_received;
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

// Splits a log line into its time, tag and message; fails when the line has another form.
struct LogLine {
    QDateTime time;
    QString tag;
    QString message;
};

LogLine parse(const QString& line) {
    static const QRegularExpression form(QStringLiteral(
        "^(\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2}) (\\[DEBUG\\]|\\[WARN\\]|\\[ERROR\\]|"
        "Fatal:|\\[INFO\\]|) - (.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    EXPECT_TRUE(match.hasMatch()) << line.toStdString();
    return {QDateTime::fromString(match.captured(1), QStringLiteral("yyyy/MM/dd hh:mm:ss")),
            match.captured(2), match.captured(3)};
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

// simple_logger's call becomes one quoted debug message of the default category. Each message is
// written as one line with the local time and the tag of its type, and handed on to the handler
// installed before the first install, a fatal one too, and the process goes on.
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
    EXPECT_EQ("default " + std::string(__FILE__) + ":" + std::to_string(line), g_context);
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
              received());
    const QStringList lines = log_lines();
    ASSERT_EQ(7, lines.size());
    const LogLine first = parse(lines[0]);
    EXPECT_LE(before, first.time);
    EXPECT_GE(after, first.time);
    EXPECT_EQ(QString::fromStdString(text), first.message);
    EXPECT_EQ(QStringLiteral("keeps %1 and %2 as written"), parse(lines[1]).message);
    EXPECT_EQ(QStringLiteral("warned 5"), parse(lines[2]).message);
    const QStringList tags{"[DEBUG]", "[DEBUG]", "[WARN]", "Fatal:", "[ERROR]", "[INFO]", ""};
    for (int i = 0; i < lines.size(); ++i) {
        EXPECT_EQ(tags[i], parse(lines[i]).tag) << lines[i].toStdString();
    }
}

// 160 lines of exactly 64 KiB fill the file to the limit, which is kept; one more line passes it
// and the file goes; the line after that starts a new file.
TEST_F(QtLoggingTest, DeletesTheFileOncePastTenMebibytes) {
    const int overhead = 32;  // time 19, blank, "[DEBUG]", " - ", "\r\n"
    const QString message(65536 - overhead, QLatin1Char('m'));
    write_message(QtDebugMsg, message);
    ASSERT_EQ(65536, QFileInfo(kLogFile).size());
    for (int i = 1; i < 160; ++i) {
        write_message(QtDebugMsg, message);
    }
    ASSERT_EQ(kLogFileMaxSize, QFileInfo(kLogFile).size());

    write_message(QtDebugMsg, QStringLiteral("passes the limit"));
    EXPECT_FALSE(QFile::exists(QString::fromLatin1(kLogFile)));

    write_message(QtWarningMsg, QStringLiteral("first of the new file"));
    const QStringList lines = log_lines();
    ASSERT_EQ(1, lines.size());
    EXPECT_EQ(QStringLiteral("first of the new file"), parse(lines[0]).message);
}

// Lines of one size from several threads: each file takes the same number of lines before it is
// deleted and the last file holds the remainder, however the threads took turns. No line is torn,
// each thread's lines in the last file follow on from each other up to its last, and the previous
// handler gets every line.
TEST_F(QtLoggingTest, LinesFromSeveralThreadsStayWholeAndTheSizeLimitHolds) {
    qInstallMessageHandler(record_message);
    install_gripper_logging();
    const int threads = 8, per_thread = 500, total = threads * per_thread;
    const std::string padding(8000, 'p');
    std::vector<std::thread> writers;
    for (int t = 0; t < threads; ++t) {
        writers.emplace_back([t, &padding] {
            for (int n = 0; n < per_thread; ++n) {
                GRIPPER_LOG("D", "thread %d line %03d %s", t, n, padding.c_str());
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }

    const QStringList lines = log_lines();
    ASSERT_FALSE(lines.empty());
    const int per_file = static_cast<int>(kLogFileMaxSize / (lines[0].toUtf8().size() + 2)) + 1;
    ASSERT_NE(0, total % per_file);
    EXPECT_EQ(total % per_file, lines.size());
    static const QRegularExpression form(
        QStringLiteral("^\"D_.*_\\d+:thread ([0-7]) line (\\d{3}) p{8000}\"$"));
    std::vector<int> last(threads, -1);
    for (const QString& line : lines) {
        const LogLine log_line = parse(line);
        EXPECT_EQ(QStringLiteral("[DEBUG]"), log_line.tag);
        const QRegularExpressionMatch match = form.match(log_line.message);
        ASSERT_TRUE(match.hasMatch()) << line.toStdString();
        int& previous = last[match.captured(1).toInt()];
        EXPECT_TRUE(previous < 0 || previous + 1 == match.captured(2).toInt())
            << line.toStdString();
        previous = match.captured(2).toInt();
    }
    for (int number : last) {
        EXPECT_TRUE(number < 0 || per_thread - 1 == number);
    }
    EXPECT_EQ(static_cast<size_t>(total), received().size());
}

}  // namespace
