#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_IMAGE_COMBO_ARROW_PAINTER_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_IMAGE_COMBO_ARROW_PAINTER_H

#include <QColor>
#include <QImage>

// Paints the drop-down arrow of the pages' combo boxes (14 x 9 points): a rounded chevron.
class ComboArrowPainter {
public:
    static const int WIDTH = 14;
    static const int HEIGHT = 9;

    static QImage paint(const QColor& color, int scale);
};

#endif
