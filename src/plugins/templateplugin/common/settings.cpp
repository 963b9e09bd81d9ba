#include "src/plugins/templateplugin/common/settings.h"

Settings::Settings(QObject* parent)
    : QSettings(QStringLiteral("orlape"), QStringLiteral("orlape_system"), parent) {}
