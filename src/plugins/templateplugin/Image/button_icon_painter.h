#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_IMAGE_BUTTON_ICON_PAINTER_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_IMAGE_BUTTON_ICON_PAINTER_H

#include <QColor>
#include <QImage>

class QPainter;

// Paints the clamp and loosen buttons of the Control page (87 x 63 points): a two-finger gripper
// whose fingers close on the centre (clamp) or open from it (loosen), with arrows showing the
// motion. The "on" form is the greyed one, shown while the controls are disabled; the "off" form
// is the coloured one.
class ButtonIconPainter {
public:
    enum Motion { CLAMP, LOOSEN };

    static const int WIDTH = 87;
    static const int HEIGHT = 63;

    // The icon at scale times its size in points.
    static QImage paint(Motion motion, bool greyed, int scale);

    // The gripper with its arrows, drawn into the 87 x 63 box at the painter's origin.
    static void paint_glyph(QPainter& painter, Motion motion, const QColor& body,
                            const QColor& arrow);

private:
    static void paint_background(QPainter& painter, bool greyed);
    static void paint_arrow(QPainter& painter, qreal from_x, qreal to_x, qreal y,
                            const QColor& color);
};

#endif
