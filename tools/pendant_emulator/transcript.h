#ifndef TOOLS_PENDANT_EMULATOR_TRANSCRIPT_H
#define TOOLS_PENDANT_EMULATOR_TRANSCRIPT_H

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QStringList>

#include "tools/pendant_emulator/script_result.h"

// The record of a session: every script command with what its plug-in returned and answered,
// and notes and stage headings in between. Each line goes to line_added and, once a file is
// open, to the file. A command reads
//   [  12.345] Zanther2F: get_gripper_status|1 -> true "i | 2" (1 ms)
//   [  12.346] Foo: bar -> not run: no plug-in named "Foo" is loaded
class Transcript : public QObject {
    Q_OBJECT

public:
    explicit Transcript(const QElapsedTimer& clock, QObject* parent = nullptr);

    bool open_file(const QString& path);
    void command(const ScriptResult& result);
    void note(const QString& text);
    void heading(const QString& text);

    const QStringList& lines() const { return lines_; }
    static QString format(const ScriptResult& result);

signals:
    void line_added(const QString& line);

private:
    void add(const QString& line);

    const QElapsedTimer& clock_;
    QFile file_;
    QStringList lines_;
};

#endif
