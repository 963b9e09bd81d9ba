#include "src/plugins/templateplugin/Image/logo_painter.h"

#include <QFont>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

#include "src/plugins/templateplugin/Image/button_icon_painter.h"

namespace {

const QColor NAVY(0x14, 0x32, 0x5c);
const QColor BLUE(0x2f, 0x80, 0xd1);
const QColor AMBER(0xff, 0xc2, 0x47);

QFont word_font(int pixel_size, QFont::Weight weight, qreal spacing) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(pixel_size);
    font.setWeight(weight);
    font.setLetterSpacing(QFont::AbsoluteSpacing, spacing);
    return font;
}

}  // namespace

QImage LogoPainter::paint(int scale) {
    QImage image(WIDTH * scale, HEIGHT * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    paint_mark(painter);
    paint_words(painter);
    return image;
}

// The gripper of the clamp button, shrunk into a rounded navy square.
void LogoPainter::paint_mark(QPainter& painter) {
    QPainterPath square;
    square.addRoundedRect(QRectF(1.0, 1.0, HEIGHT - 2.0, HEIGHT - 2.0), 10.0, 10.0);
    QLinearGradient fill(0.0, 0.0, 0.0, HEIGHT);
    fill.setColorAt(0.0, NAVY.lighter(135));
    fill.setColorAt(1.0, NAVY);
    painter.fillPath(square, fill);
    painter.save();
    const qreal shrink = (HEIGHT - 10.0) / ButtonIconPainter::WIDTH;
    painter.translate(5.0, (HEIGHT - ButtonIconPainter::HEIGHT * shrink) / 2.0);
    painter.scale(shrink, shrink);
    ButtonIconPainter::paint_glyph(painter, ButtonIconPainter::CLAMP, Qt::white, AMBER);
    painter.restore();
}

void LogoPainter::paint_words(QPainter& painter) {
    const qreal left = HEIGHT + 10.0;
    painter.setPen(NAVY);
    painter.setFont(word_font(27, QFont::Bold, 1.0));
    painter.drawText(QPointF(left, 30.0), QStringLiteral("ZANTHER"));
    painter.setPen(BLUE);
    painter.setFont(word_font(12, QFont::DemiBold, 4.6));
    painter.drawText(QPointF(left + 1.0, 49.0), QStringLiteral("ROBOTICS"));
    painter.fillRect(QRectF(left + 1.0, 36.0, 36.0, 2.5), AMBER);
}
