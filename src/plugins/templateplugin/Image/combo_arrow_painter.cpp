#include "src/plugins/templateplugin/Image/combo_arrow_painter.h"

#include <QPainter>
#include <QPainterPath>

QImage ComboArrowPainter::paint(const QColor& color, int scale) {
    QImage image(WIDTH * scale, HEIGHT * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    QPainterPath chevron;
    chevron.moveTo(2.0, 2.0);
    chevron.lineTo(WIDTH / 2.0, HEIGHT - 2.0);
    chevron.lineTo(WIDTH - 2.0, 2.0);
    painter.setPen(QPen(color, 2.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(chevron);
    return image;
}
