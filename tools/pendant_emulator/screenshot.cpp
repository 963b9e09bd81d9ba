#include "tools/pendant_emulator/screenshot.h"

#include <QSet>
#include <QWidget>

namespace {

// A page with text, frames and buttons has far more colours than this; an empty or unpainted
// one has one or two.
const int MIN_COLOURS = 8;
const int SAMPLE_STEP = 3;

}  // namespace

QImage Screenshot::take(QWidget* widget) {
    QImage image(widget->size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    widget->render(&image);
    return image;
}

bool Screenshot::save(QWidget* widget, const QString& path, QString& error) {
    const QImage image = take(widget);
    if (blank(image)) {
        error = QString("the picture %1 is blank").arg(path);
        return false;
    }
    if (!image.save(path, "PNG")) {
        error = QString("cannot write %1").arg(path);
        return false;
    }
    return true;
}

bool Screenshot::blank(const QImage& image) {
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += SAMPLE_STEP) {
        for (int x = 0; x < image.width() && colours.size() < MIN_COLOURS; x += SAMPLE_STEP) {
            colours.insert(image.pixel(x, y));
        }
    }
    return colours.size() < MIN_COLOURS;
}
