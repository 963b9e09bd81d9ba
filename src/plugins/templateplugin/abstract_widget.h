#ifndef TEMPLATEPLUGIN_ABSTRACT_WIDGET_H
#define TEMPLATEPLUGIN_ABSTRACT_WIDGET_H

#include <QFont>
#include <QMargins>
#include <QPointer>
#include <QRect>
#include <QSize>
#include <QVector>
#include <QWidget>

class QLayout;

// A form drawn for a 1024 x 768 screen that fits the pendant's screen: it remembers the designed
// geometry of itself, every child widget and every layout, and sets them scaled by the screen
// ratio. Scaling always starts from the designed values, so it never compounds.
class AbstractWidget : public QWidget {
    Q_OBJECT

public:
    explicit AbstractWidget(QWidget* parent = nullptr);
    ~AbstractWidget() override;

protected:
    // Records the designed values on the first call (after the form is built), then scales.
    void autoResize();

private:
    struct AutoResizeOriginalData {
        QPointer<QWidget> widget;
        QRect geometry;
        QSize minimum_size;
        QSize maximum_size;
        QFont font;
        bool own_font;
        bool placed_by_layout;
    };
    struct AutoLayoutOriginalData {
        QPointer<QLayout> layout;
        QMargins margins;
        int spacing;
    };

    void record_original_data();
    void record_widget(QWidget* widget);
    static void scale_widget(const AutoResizeOriginalData& data);
    static void scale_layout(const AutoLayoutOriginalData& data);

    QVector<AutoResizeOriginalData> widget_data_;
    QVector<AutoLayoutOriginalData> layout_data_;
};

#endif
