#include "src/plugins/templateplugin/Image/button_icon_painter.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

namespace {

const qreal RAIL_TOP = 10.0;
const qreal RAIL_HEIGHT = 6.0;
const qreal FINGER_WIDTH = 7.0;
const qreal FINGER_BOTTOM = 52.0;
const qreal ARROW_Y = 36.0;

// Left edges of the two fingers: close together for clamp, far apart for loosen.
void finger_positions(ButtonIconPainter::Motion motion, qreal& left, qreal& right) {
    const bool clamp = ButtonIconPainter::CLAMP == motion;
    left = clamp ? 32.0 : 17.0;
    right = clamp ? 48.0 : 63.0;
}

void paint_finger(QPainter& painter, qreal x, bool pad_right, const QColor& color) {
    QPainterPath finger;
    finger.setFillRule(Qt::WindingFill);
    finger.addRoundedRect(QRectF(x, RAIL_TOP + RAIL_HEIGHT - 1.0, FINGER_WIDTH,
                                 FINGER_BOTTOM - RAIL_TOP - RAIL_HEIGHT + 1.0),
                          2.0, 2.0);
    const qreal pad_x = pad_right ? x + FINGER_WIDTH - 1.0 : x - 2.0;
    finger.addRoundedRect(QRectF(pad_x, FINGER_BOTTOM - 14.0, 3.0, 12.0), 1.0, 1.0);
    painter.fillPath(finger, color);
}

}  // namespace

QImage ButtonIconPainter::paint(Motion motion, bool greyed, int scale) {
    QImage image(WIDTH * scale, HEIGHT * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    paint_background(painter, greyed);
    const QColor body = greyed ? QColor(0x9a, 0xa1, 0xaa) : QColor(Qt::white);
    const QColor arrow = greyed ? QColor(0xb4, 0xba, 0xc2) : QColor(0xff, 0xc2, 0x47);
    paint_glyph(painter, motion, body, arrow);
    return image;
}

void ButtonIconPainter::paint_glyph(QPainter& painter, Motion motion, const QColor& body,
                                    const QColor& arrow) {
    qreal left = 0.0;
    qreal right = 0.0;
    finger_positions(motion, left, right);
    QPainterPath rail;
    rail.addRoundedRect(
        QRectF(left - 5.0, RAIL_TOP, right - left + FINGER_WIDTH + 10.0, RAIL_HEIGHT), 2.0, 2.0);
    painter.fillPath(rail, body);
    paint_finger(painter, left, true, body);
    paint_finger(painter, right, false, body);
    if (CLAMP == motion) {
        paint_arrow(painter, 8.0, left - 4.0, ARROW_Y, arrow);
        paint_arrow(painter, WIDTH - 8.0, right + FINGER_WIDTH + 4.0, ARROW_Y, arrow);
    } else {
        paint_arrow(painter, 41.0, left + FINGER_WIDTH + 5.0, ARROW_Y, arrow);
        paint_arrow(painter, 46.0, right - 5.0, ARROW_Y, arrow);
    }
}

void ButtonIconPainter::paint_background(QPainter& painter, bool greyed) {
    const QRectF frame(1.0, 1.0, WIDTH - 2.0, HEIGHT - 2.0);
    QLinearGradient fill(frame.topLeft(), frame.bottomLeft());
    fill.setColorAt(0.0, greyed ? QColor(0xe6, 0xe9, 0xed) : QColor(0x3d, 0x93, 0xe4));
    fill.setColorAt(1.0, greyed ? QColor(0xcb, 0xd0, 0xd6) : QColor(0x1c, 0x5c, 0xab));
    QPainterPath outline;
    outline.addRoundedRect(frame, 9.0, 9.0);
    painter.fillPath(outline, fill);
    painter.setPen(QPen(greyed ? QColor(0xb8, 0xbe, 0xc6) : QColor(0x15, 0x4a, 0x8a), 1.0));
    painter.drawPath(outline);
    painter.setPen(Qt::NoPen);
}

// A horizontal arrow with its head at to_x.
void ButtonIconPainter::paint_arrow(QPainter& painter, qreal from_x, qreal to_x, qreal y,
                                    const QColor& color) {
    const qreal direction = to_x > from_x ? 1.0 : -1.0;
    const qreal head = 7.0;
    painter.setPen(QPen(color, 3.0, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(from_x, y), QPointF(to_x - direction * head, y));
    painter.setPen(Qt::NoPen);
    QPolygonF tip;
    tip << QPointF(to_x, y) << QPointF(to_x - direction * head, y - 5.5)
        << QPointF(to_x - direction * head, y + 5.5);
    painter.setBrush(color);
    painter.drawPolygon(tip);
    painter.setBrush(Qt::NoBrush);
}
