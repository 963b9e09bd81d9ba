#include "tools/pendant_emulator/language_catalogue.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>

bool LanguageCatalogue::install(const QString& language, QString& error) {
    const QString file = language.endsWith(".qm") ? language : find_in_resources(language);
    if (file.isEmpty()) {
        error = QString("no catalogue %1_*.qm in the plug-ins' resources").arg(language);
        return false;
    }
    if (!QFileInfo::exists(file) || !translator_.load(file)) {
        error = QString("the catalogue %1 does not load").arg(file);
        return false;
    }
    QCoreApplication::installTranslator(&translator_);
    file_ = file;
    return true;
}

QString LanguageCatalogue::find_in_resources(const QString& language) {
    QDirIterator it(":/", {language + "_*.qm"}, QDir::Files, QDirIterator::Subdirectories);
    return it.hasNext() ? it.next() : QString();
}
