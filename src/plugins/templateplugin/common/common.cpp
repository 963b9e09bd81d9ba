#include "src/plugins/templateplugin/common/common.h"

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QScreen>
#include <QUuid>
#include <QWidget>

#include <algorithm>

#include "src/plugins/templateplugin/common/messagebox.h"
#include "src/plugins/templateplugin/common/screen_area.h"
#include "src/plugins/templateplugin/common/settings.h"

namespace {

ScreenArea read_screen_area() {
    const QString resolution = Settings().value(QStringLiteral("Displays/Resolution")).toString();
    QScreen* screen = QGuiApplication::primaryScreen();
    const QRect available = nullptr != screen ? screen->availableGeometry() : QRect();
    const QRect whole = nullptr != screen ? screen->geometry() : QRect();
    return ScreenArea::fromResolution(resolution, available, whole);
}

int scaled(int value, double ratio) {
    return static_cast<int>(value * ratio + 0.5);
}

}  // namespace

Common* Common::getCommonHandle() {
    static Common* const handle = new Common();
    return handle;
}

Common::Common() : ask_control_io_(false) {
    const ScreenArea area = read_screen_area();
    screen_left_ = area.left;
    screen_top_ = area.top;
    screen_width_ = area.width;
    screen_height_ = area.height;
    width_ratio_ = screen_width_ * (1.0 / ScreenArea::DESIGN_WIDTH);
    height_ratio_ = static_cast<double>(screen_height_) / ScreenArea::DESIGN_HEIGHT;
    min_ratio_ = std::min(width_ratio_, height_ratio_);
    font_size_ = getMinRatioSize(20);
    row_height_ = getRatioHeight(30);
}

int Common::getRatioWidth(const int& w) const {
    return scaled(w, width_ratio_);
}

int Common::getRatioHeight(const int& h) const {
    return scaled(h, height_ratio_);
}

int Common::getMinRatioSize(const int& s) const {
    return scaled(s, min_ratio_);
}

QSize Common::getRatioSize(const int& w, const int& h) const {
    return QSize(getRatioWidth(w), getRatioHeight(h));
}

int Common::getRatioFontWidth(const QString& text, const int& pixelSize) const {
    QFont font;
    font.setPixelSize(getMinRatioSize(pixelSize));
    const QFontMetrics metrics(font);
#if QT_VERSION >= QT_VERSION_CHECK(5, 11, 0)
    return metrics.horizontalAdvance(text) + 8;
#else
    return metrics.width(text) + 8;
#endif
}

void Common::setRatioStyleSheet(QWidget* widget) const {
    if (nullptr != widget) {
        widget->setStyleSheet(scaledStyleSheet(widget->styleSheet(), min_ratio_));
    }
}

QString Common::scaledStyleSheet(QString sheet, double ratio) {
    static const QRegularExpression pixels(QStringLiteral("([0-9]*)(px)"));
    QRegularExpressionMatch match = pixels.match(sheet);
    while (match.hasMatch()) {
        const QString replacement =
            QStringLiteral("%1px").arg(scaled(match.captured(1).toInt(), ratio));
        sheet.replace(match.capturedStart(), match.capturedLength(), replacement);
        match = pixels.match(sheet, match.capturedStart() + replacement.length());
    }
    return sheet;
}

QString Common::getUuid() const {
    QString text = QUuid::createUuid().toString();
    return text.remove(QLatin1Char('{')).remove(QLatin1Char('}'));
}

bool Common::isEnableControlIO() const {
    if (!ask_control_io_) {
        return true;
    }
    const QString question =
        QCoreApplication::translate("Common", "Are you sure you want to control IO?");
    return QMessageBox::Yes == MessageBox::question(question, QMessageBox::Yes | QMessageBox::No,
                                                    QMessageBox::No, QMessageBox::No);
}

void Common::setEnableControlIO(bool ask) {
    ask_control_io_ = ask;
}

void Common::setSharedFilePath(const QString& path) {
    shared_file_path_ = path;
}

QString Common::sharedFilePath() const {
    return shared_file_path_;
}
