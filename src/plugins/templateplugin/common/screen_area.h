#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_SCREEN_AREA_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_SCREEN_AREA_H

#include <QRect>
#include <QString>

// The part of the screen that the plug-in's forms, designed for 1024 x 768, are scaled to.
struct ScreenArea {
    static const int DESIGN_WIDTH = 1024;
    static const int DESIGN_HEIGHT = 768;

    // From the pendant's "Displays/Resolution" text ("1280*800"), the desktop's available area
    // and the whole screen: a size below the design size is raised to it; a larger one is kept
    // when it fits into the available area and is otherwise replaced by the whole screen's.
    static ScreenArea fromResolution(const QString& resolution, const QRect& available,
                                     const QRect& screen);

    int left;
    int top;
    int width;
    int height;
};

#endif
