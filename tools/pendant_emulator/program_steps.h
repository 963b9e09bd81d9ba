#ifndef TOOLS_PENDANT_EMULATOR_PROGRAM_STEPS_H
#define TOOLS_PENDANT_EMULATOR_PROGRAM_STEPS_H

#include <QString>
#include <QVector>
#include <memory>
#include <vector>

#include "tools/pendant_emulator/script_line.h"

class AbsCondInfo;

// The steps of the program being edited, each a record made by the plug-in named by its type
// and owned here. The plug-ins are found by name in the plug-in manager's pool and reached
// through their program-step methods only.
class ProgramSteps {
public:
    ProgramSteps();
    ~ProgramSteps();
    ProgramSteps(const ProgramSteps&) = delete;
    ProgramSteps& operator=(const ProgramSteps&) = delete;

    int count() const { return static_cast<int>(steps_.size()); }
    AbsCondInfo* at(int row) const { return steps_[static_cast<std::size_t>(row)].get(); }

    // Takes the record; gives it an alias of its own when it has none or another step's.
    // row -1 appends.
    void insert(int row, AbsCondInfo* record);
    void replace(int row, AbsCondInfo* record);
    void remove(int row);
    void clear();
    // A copy made by the step's plug-in, inserted after it; false (error set) when it fails.
    bool copy(int row, QString& error);

    // The script line of a step, as its plug-in compiles it; empty (error set) on failure.
    QString script_text(int row, QString& error) const;
    // Every step's line; false (error names the step) when one does not compile or parse.
    bool compile(QVector<ScriptLine>& lines, QString& error) const;
    // True when the step's plug-in accepts the record; error holds its reason otherwise.
    bool check(int row, QString& error) const;

    bool save(const QString& path, QString& error) const;
    // Rebuilds every step through its plug-in's xmlInfoToCondInfo; all or nothing.
    bool open(const QString& path, QString& error);

private:
    QString unused_alias(const QString& type) const;
    void name(AbsCondInfo* record) const;

    std::vector<std::unique_ptr<AbsCondInfo>> steps_;
};

#endif
