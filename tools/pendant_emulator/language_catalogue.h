#ifndef TOOLS_PENDANT_EMULATOR_LANGUAGE_CATALOGUE_H
#define TOOLS_PENDANT_EMULATOR_LANGUAGE_CATALOGUE_H

#include <QString>
#include <QTranslator>

// The language of the session: a catalogue file given by path, or one named "<language>_*.qm"
// among the resources of the loaded plug-ins, installed on the application so that the pages
// built afterwards are translated.
class LanguageCatalogue {
public:
    // False with error set when no catalogue is found or it does not load.
    bool install(const QString& language, QString& error);
    // The catalogue installed ("" before).
    const QString& file() const { return file_; }

private:
    static QString find_in_resources(const QString& language);

    QTranslator translator_;
    QString file_;
};

#endif
