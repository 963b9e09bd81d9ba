// Paints the pages' images into the folder given as the only argument.
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QString>

#include <cstdio>

#include "src/plugins/templateplugin/Image/button_icon_painter.h"
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
    const bool saved = save(LogoPainter::paint(SCALE), folder, "logo_EN.png") &&
                       save(ButtonIconPainter::paint(ButtonIconPainter::CLAMP, true, SCALE), folder,
                            "B_Clamp_ON.png") &&
                       save(ButtonIconPainter::paint(ButtonIconPainter::CLAMP, false, SCALE),
                            folder, "B_Clamp_OFF.png") &&
                       save(ButtonIconPainter::paint(ButtonIconPainter::LOOSEN, true, SCALE),
                            folder, "B_Loosen_ON.png") &&
                       save(ButtonIconPainter::paint(ButtonIconPainter::LOOSEN, false, SCALE),
                            folder, "B_Loosen_OFF.png");
    return saved ? 0 : 1;
}
