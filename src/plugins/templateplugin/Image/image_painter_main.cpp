// Paints the pages' images into the folder given as the only argument.
#include <QColor>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QString>

#include <cstdio>

#include "src/plugins/templateplugin/Image/button_icon_painter.h"
#include "src/plugins/templateplugin/Image/combo_arrow_painter.h"
#include "src/plugins/templateplugin/Image/logo_painter.h"

namespace {

// Drawn at twice their size in points, so they stay sharp on a scaled screen.
const int SCALE = 2;

bool save(const QImage& image, const QDir& folder, const char* name) {
    const QString path = folder.filePath(QString::fromLatin1(name));
    if (!image.save(path, "PNG")) {
        std::fprintf(stderr, "cannot write %s\n", path.toLocal8Bit().constData());
        return false;
    }
    return true;
}

}  // namespace

int main(int argc, char* argv[]) {
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    const QColor arrow(0x14, 0x32, 0x5c);
    const QColor arrow_disabled(0xa3, 0xad, 0xb8);
    const struct {
        QImage image;
        const char* name;
    } images[] = {
        {LogoPainter::paint(SCALE), "logo_EN.png"},
        {ButtonIconPainter::paint(ButtonIconPainter::CLAMP, true, SCALE), "B_Clamp_ON.png"},
        {ButtonIconPainter::paint(ButtonIconPainter::CLAMP, false, SCALE), "B_Clamp_OFF.png"},
        {ButtonIconPainter::paint(ButtonIconPainter::LOOSEN, true, SCALE), "B_Loosen_ON.png"},
        {ButtonIconPainter::paint(ButtonIconPainter::LOOSEN, false, SCALE), "B_Loosen_OFF.png"},
        {ComboArrowPainter::paint(arrow, SCALE), "arrow_down.png"},
        {ComboArrowPainter::paint(arrow_disabled, SCALE), "arrow_down_disabled.png"},
    };
    for (const auto& entry : images) {
        if (!save(entry.image, folder, entry.name)) {
            return 1;
        }
    }
    return 0;
}
