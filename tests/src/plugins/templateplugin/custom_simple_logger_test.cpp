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

#include <array>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

namespace {

const char kLogFile[] = "zanther_gripper_log.log";
const qint64 kLogFileMaxSize = 10485760;

struct Received {
    QtMsgType type;
    QString category;
    QString file;
    int line;
    QString message;
};

std::mutex g_received_mutex;
std::vector<Received> g_received;

void record_message(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    std::lock_guard<std::mutex> lock(g_received_mutex);
    g_received.push_back({type, QString::fromUtf8(context.category),
                          QString::fromUtf8(context.file), context.line, message});
}

std::vector<Received> received() {
    std::lock_guard<std::mutex> lock(g_received_mutex);
    return g_received;
}

void clear_received() {
    std::lock_guard<std::mutex> lock(g_received_mutex);
    g_received.clear();
}

// The lines of the log file; every line must end with "\r\n" and hold no other line break.
QStringList log_lines() {
    QFile file(QString::fromLatin1(kLogFile));
    if (!file.open(QIODevice::ReadOnly)) {
        ADD_FAILURE() << "no log file";
        return QStringList();
    }
    const QByteArray content = file.readAll();
    EXPECT_TRUE(content.endsWith("\r\n"));
    EXPECT_EQ(content.count('\n'), content.count("\r\n"));
    EXPECT_EQ(content.count('\r'), content.count("\r\n"));
    QStringList lines = QString::fromUtf8(content).split(QStringLiteral("\r\n"));
    lines.removeLast();
    return lines;
}

qint64 log_size() {
    return QFileInfo(QString::fromLatin1(kLogFile)).size();
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

QDateTime now_to_the_second() {
    QDateTime now = QDateTime::currentDateTime();
    return now.addMSecs(-now.time().msec());
}

void write_message(QtMsgType type, const QString& message) {
    outputMessage(type, QMessageLogContext(), message);
}

// Logs kLinesPerThread lines from each of kThreadCount threads, all of the same size.
const int kThreadCount = 8;
const int kLinesPerThread = 500;

void log_from_threads(const std::string& padding) {
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreadCount; ++t) {
        threads.emplace_back([t, &padding] {
            for (int n = 0; n < kLinesPerThread; ++n) {
                GRIPPER_LOG("D", "thread %d line %03d %s", t, n, padding.c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

struct ThreadLine {
    int thread;
    int number;
};

// Parses a whole line written by log_from_threads; fails the test when it is not one.
ThreadLine parse_thread_line(const QString& line, int padding_size) {
    static const QRegularExpression form(
        QStringLiteral("^\"D_.*_\\d+:thread ([0-7]) line (\\d{3}) (p+)\"$"));
    const LogLine log_line = parse(line);
    EXPECT_EQ(QStringLiteral("[DEBUG]"), log_line.tag);
    const QRegularExpressionMatch match = form.match(log_line.message);
    EXPECT_TRUE(match.hasMatch()) << line.toStdString();
    EXPECT_EQ(padding_size, match.capturedLength(3));
    return {match.captured(1).toInt(), match.captured(2).toInt()};
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
        clear_received();
    }

    QTemporaryDir dir_;
    QString previous_dir_;
};

TEST_F(QtLoggingTest, BackEndEmitsOneQuotedDebugMessageOfTheDefaultCategory) {
    qInstallMessageHandler(record_message);
    register_simple_logger(custom_simple_logger);
    const std::string long_text(100000, 'y');

    simple_logger("E", "some/file.cpp", 123, "value %d of %s, %s", 42, "x", long_text.c_str());

    const std::vector<Received> got = received();
    ASSERT_EQ(1u, got.size());
    EXPECT_EQ(QtDebugMsg, got[0].type);
    EXPECT_EQ(QStringLiteral("default"), got[0].category);
    EXPECT_EQ(QStringLiteral("some/file.cpp"), got[0].file);
    EXPECT_EQ(123, got[0].line);
    const QString expected = QStringLiteral("\"E_some/file.cpp_123:value 42 of x, ") +
                             QString::fromStdString(long_text) + QStringLiteral("\"");
    EXPECT_EQ(expected, got[0].message);
    EXPECT_FALSE(QFile::exists(QString::fromLatin1(kLogFile)));
}

TEST_F(QtLoggingTest, WritesLocalTimeTagAndMessageAsOneLine) {
    install_gripper_logging();
    g_default_qt_message_halder_ = nullptr;
    const QDateTime before = now_to_the_second();

    const unsigned int line = __LINE__ + 1;
    GRIPPER_LOG("W", "count = %d, name = %s", 7, "gripper");
    write_message(QtDebugMsg, QStringLiteral("keeps %1 and %2 as written"));

    const QDateTime after = QDateTime::currentDateTime();
    const QStringList lines = log_lines();
    ASSERT_EQ(2, lines.size());
    const LogLine first = parse(lines[0]);
    EXPECT_LE(before, first.time);
    EXPECT_GE(after, first.time);
    EXPECT_EQ(QStringLiteral("[DEBUG]"), first.tag);
    EXPECT_EQ(QStringLiteral("\"W_%1_%2:count = 7, name = gripper\"").arg(__FILE__).arg(line),
              first.message);
    EXPECT_EQ(QStringLiteral("keeps %1 and %2 as written"), parse(lines[1]).message);
}

TEST_F(QtLoggingTest, TagsEachMessageType) {
    const QtMsgType other = static_cast<QtMsgType>(QtInfoMsg + 1);
    const std::array<std::pair<QtMsgType, const char*>, 6> types = {{{QtDebugMsg, "[DEBUG]"},
                                                                     {QtWarningMsg, "[WARN]"},
                                                                     {QtCriticalMsg, "[ERROR]"},
                                                                     {QtFatalMsg, "Fatal:"},
                                                                     {QtInfoMsg, "[INFO]"},
                                                                     {other, ""}}};
    for (const auto& type : types) {
        write_message(type.first,
                      QStringLiteral("message of %1").arg(QString::fromLatin1(type.second)));
    }

    const QStringList lines = log_lines();
    ASSERT_EQ(static_cast<int>(types.size()), lines.size());
    for (size_t i = 0; i < types.size(); ++i) {
        const QString tag = QString::fromLatin1(types[i].second);
        EXPECT_TRUE(lines[i].endsWith(QStringLiteral(" %1 - message of %1").arg(tag)))
            << lines[i].toStdString();
        EXPECT_EQ(tag, parse(lines[i]).tag);
    }
}

TEST_F(QtLoggingTest, LogsNothingBeforeABackEndIsRegistered) {
    qInstallMessageHandler(record_message);
    GRIPPER_LOG("E", "no back end %d", 1);
    EXPECT_TRUE(received().empty());

    qInstallMessageHandler(outputMessage);
    GRIPPER_LOG("E", "no back end %d", 2);
    EXPECT_FALSE(QFile::exists(QString::fromLatin1(kLogFile)));
}

// 160 lines of exactly 64 KiB fill the file to the limit, which is kept; one more line passes it
// and the file goes; the line after that starts a new file.
TEST_F(QtLoggingTest, DeletesTheFileOncePastTenMebibytes) {
    const int overhead = 32;  // time 19, blank, "[DEBUG]", " - ", "\r\n"
    const QString message(65536 - overhead, QLatin1Char('m'));
    write_message(QtDebugMsg, message);
    ASSERT_EQ(65536, log_size());
    for (int i = 1; i < 160; ++i) {
        write_message(QtDebugMsg, message);
    }
    ASSERT_EQ(kLogFileMaxSize, log_size());

    write_message(QtDebugMsg, QStringLiteral("passes the limit"));
    EXPECT_FALSE(QFile::exists(QString::fromLatin1(kLogFile)));

    write_message(QtWarningMsg, QStringLiteral("first of the new file"));
    const QStringList lines = log_lines();
    ASSERT_EQ(1, lines.size());
    EXPECT_EQ(QStringLiteral("first of the new file"), parse(lines[0]).message);
}

TEST_F(QtLoggingTest, LinesFromSeveralThreadsStayWhole) {
    qInstallMessageHandler(record_message);
    install_gripper_logging();

    log_from_threads(std::string(500, 'p'));

    std::vector<int> next(kThreadCount, 0);
    const QStringList lines = log_lines();
    ASSERT_EQ(kThreadCount * kLinesPerThread, lines.size());
    for (const QString& line : lines) {
        const ThreadLine parsed = parse_thread_line(line, 500);
        ASSERT_EQ(next[parsed.thread]++, parsed.number) << line.toStdString();
    }
    EXPECT_EQ(std::vector<int>(kThreadCount, kLinesPerThread), next);
    EXPECT_EQ(static_cast<size_t>(kThreadCount * kLinesPerThread), received().size());
}

// All lines have the same size, so each file takes the same number of lines before it is deleted
// and the last file holds the remainder, however the threads took turns.
TEST_F(QtLoggingTest, SizeLimitHoldsWithSeveralWriters) {
    install_gripper_logging();
    g_default_qt_message_halder_ = nullptr;

    log_from_threads(std::string(8000, 'p'));

    const QStringList lines = log_lines();
    ASSERT_FALSE(lines.empty());
    const qint64 line_size = lines[0].toUtf8().size() + 2;
    const int lines_per_file = static_cast<int>(kLogFileMaxSize / line_size) + 1;
    ASSERT_NE(0, kThreadCount * kLinesPerThread % lines_per_file);
    EXPECT_EQ(kThreadCount * kLinesPerThread % lines_per_file, lines.size());
    std::vector<int> last(kThreadCount, -1);
    for (const QString& line : lines) {
        const ThreadLine parsed = parse_thread_line(line, 8000);
        EXPECT_LT(last[parsed.thread], parsed.number) << line.toStdString();
        last[parsed.thread] = parsed.number;
    }
}

TEST_F(QtLoggingTest, HandsEachMessageOnToThePreviousHandler) {
    qInstallMessageHandler(record_message);
    install_gripper_logging();
    install_gripper_logging();
    EXPECT_EQ(&record_message, g_default_qt_message_halder_);

    qWarning("warned %d", 5);
    write_message(QtFatalMsg, QStringLiteral("fatal, yet the process goes on"));

    const std::vector<Received> got = received();
    ASSERT_EQ(2u, got.size());
    EXPECT_EQ(QtWarningMsg, got[0].type);
    EXPECT_EQ(QStringLiteral("warned 5"), got[0].message);
    EXPECT_EQ(QtFatalMsg, got[1].type);
    EXPECT_EQ(QStringLiteral("fatal, yet the process goes on"), got[1].message);
    const QStringList lines = log_lines();
    ASSERT_EQ(2, lines.size());
    EXPECT_EQ(QStringLiteral("[WARN]"), parse(lines[0]).tag);
    EXPECT_EQ(QStringLiteral("warned 5"), parse(lines[0]).message);
    EXPECT_EQ(QStringLiteral("Fatal:"), parse(lines[1]).tag);
}

}  // namespace
