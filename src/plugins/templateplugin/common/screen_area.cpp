#include "src/plugins/templateplugin/common/screen_area.h"

#include <QStringList>

namespace {

// One dimension: the size used and the origin of the usable area along it.
void fit(int configured, int design, int available_origin, int available_size, int screen_size,
         int& origin, int& size) {
    size = configured < design ? design : configured;
    if (configured >= design && size > available_size && screen_size > 0) {
        size = screen_size;
    }
    origin = size <= available_size ? available_origin : 0;
}

}  // namespace

ScreenArea ScreenArea::fromResolution(const QString& resolution, const QRect& available,
                                      const QRect& screen) {
    const QStringList parts = resolution.split(QLatin1Char('*'));
    const int width = parts.value(0).trimmed().toInt();
    const int height = parts.value(1).trimmed().toInt();
    ScreenArea area;
    fit(width, DESIGN_WIDTH, available.left(), available.width(), screen.width(), area.left,
        area.width);
    fit(height, DESIGN_HEIGHT, available.top(), available.height(), screen.height(), area.top,
        area.height);
    return area;
}
