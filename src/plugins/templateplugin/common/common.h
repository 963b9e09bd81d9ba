#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_COMMON_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_COMMON_H

#include <QSize>
#include <QString>

class QWidget;

// Scales the plug-in's forms, designed for a 1024 x 768 screen, to the pendant's screen: learns
// the screen size once from the pendant's "Displays/Resolution" setting and offers scaled sizes,
// fonts and style sheets. Also holds the pendant's shared file path, makes unique-id texts and
// asks the operator before I/O is switched by hand. One instance, made on the first
// getCommonHandle() call (on the interface thread) and never destroyed.
class Common {
public:
    static Common* getCommonHandle();

    int getRatioWidth(const int& w) const;
    int getRatioHeight(const int& h) const;
    int getMinRatioSize(const int& s) const;
    QSize getRatioSize(const int& w, const int& h) const;
    // Width of text in the default font at the scaled pixel size, plus 8.
    int getRatioFontWidth(const QString& text, const int& pixelSize) const;
    // Scales every "<number>px" of the widget's style sheet by the minimum ratio.
    void setRatioStyleSheet(QWidget* widget) const;
    // The style sheet with every "<number>px" scaled by ratio (rounded half up).
    static QString scaledStyleSheet(QString sheet, double ratio);
    // A new random UUID without braces.
    QString getUuid() const;
    // True when I/O may be switched: at once while confirmation is off, otherwise when the
    // operator answers Yes.
    bool isEnableControlIO() const;
    void setEnableControlIO(bool ask);

    void setSharedFilePath(const QString& path);
    QString sharedFilePath() const;

    double getWidthRatio() const { return width_ratio_; }
    double getHeightRatio() const { return height_ratio_; }
    double getMinRatio() const { return min_ratio_; }
    int getFontSize() const { return font_size_; }
    int getRowHeight() const { return row_height_; }
    int getScreenLeft() const { return screen_left_; }
    int getScreenTop() const { return screen_top_; }
    int getScreenWidth() const { return screen_width_; }
    int getScreenHeight() const { return screen_height_; }

private:
    Common();
    Common(const Common&) = delete;
    Common& operator=(const Common&) = delete;

    QString shared_file_path_;
    bool ask_control_io_;
    double width_ratio_;
    double height_ratio_;
    double min_ratio_;
    int font_size_;
    int row_height_;
    int screen_left_;
    int screen_top_;
    int screen_width_;
    int screen_height_;
};

#endif
