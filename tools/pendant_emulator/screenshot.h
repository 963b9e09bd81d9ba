#ifndef TOOLS_PENDANT_EMULATOR_SCREENSHOT_H
#define TOOLS_PENDANT_EMULATOR_SCREENSHOT_H

#include <QImage>
#include <QString>

class QWidget;

// Pictures of widgets as a person would see them, drawn at one image pixel per widget pixel
// whatever the platform's scale.
class Screenshot {
public:
    static QImage take(QWidget* widget);
    // Saves a picture of the widget as PNG; false with error set when it is blank or not saved.
    static bool save(QWidget* widget, const QString& path, QString& error);
    // True when the picture shows (almost) nothing: fewer than a handful of colours.
    static bool blank(const QImage& image);
};

#endif
