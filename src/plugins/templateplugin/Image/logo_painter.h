#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_IMAGE_LOGO_PAINTER_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_IMAGE_LOGO_PAINTER_H

#include <QImage>

// Paints the English logo of the pages (220 x 56 points, transparent): a square mark with a
// two-finger gripper and the word mark "ZANTHER" over "ROBOTICS".
class LogoPainter {
public:
    static const int WIDTH = 220;
    static const int HEIGHT = 56;

    static QImage paint(int scale);

private:
    static void paint_mark(class QPainter& painter);
    static void paint_words(class QPainter& painter);
};

#endif
