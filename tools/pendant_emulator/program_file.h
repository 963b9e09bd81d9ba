#ifndef TOOLS_PENDANT_EMULATOR_PROGRAM_FILE_H
#define TOOLS_PENDANT_EMULATOR_PROGRAM_FILE_H

#include <QString>
#include <QVector>

// One program step as the file keeps it: the plug-in that executes it (the step's type), its
// alias and its parameters as the plug-in's JSON text.
struct StoredStep {
    QString type;
    QString alias;
    QString json;
};

// A program file: a JSON document
//   {"format": "pendant-emulator program", "version": 1,
//    "steps": [{"type": "...", "alias": "...", "json": "..."}, ...]}
// Reading checks every step before any is returned; the error names the first bad one.
class ProgramFile {
public:
    static const char* const FORMAT;
    static const int VERSION = 1;

    static bool write(const QString& path, const QVector<StoredStep>& steps, QString& error);
    static bool read(const QString& path, QVector<StoredStep>& steps, QString& error);
    // The document itself, for files and tests.
    static QByteArray to_json(const QVector<StoredStep>& steps);
    static bool from_json(const QByteArray& json, QVector<StoredStep>& steps, QString& error);
};

#endif
