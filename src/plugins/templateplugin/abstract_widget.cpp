#include "src/plugins/templateplugin/abstract_widget.h"

#include <QLayout>

#include "src/plugins/templateplugin/common/common.h"

namespace {

int scaled_width(int width) {
    if (width <= 0 || QWIDGETSIZE_MAX == width) {
        return width;
    }
    return Common::getCommonHandle()->getRatioWidth(width);
}

int scaled_height(int height) {
    if (height <= 0 || QWIDGETSIZE_MAX == height) {
        return height;
    }
    return Common::getCommonHandle()->getRatioHeight(height);
}

QSize scaled_size(const QSize& size) {
    return QSize(scaled_width(size.width()), scaled_height(size.height()));
}

QFont scaled_font(QFont font) {
    Common* common = Common::getCommonHandle();
    if (font.pointSize() > 0) {
        font.setPointSize(common->getMinRatioSize(font.pointSize()));
    } else if (font.pixelSize() > 0) {
        font.setPixelSize(common->getMinRatioSize(font.pixelSize()));
    }
    return font;
}

}  // namespace

AbstractWidget::AbstractWidget(QWidget* parent) : QWidget(parent) {}

AbstractWidget::~AbstractWidget() = default;

void AbstractWidget::autoResize() {
    if (widget_data_.isEmpty()) {
        record_original_data();
    }
    for (const AutoResizeOriginalData& data : widget_data_) {
        scale_widget(data);
    }
    for (const AutoLayoutOriginalData& data : layout_data_) {
        scale_layout(data);
    }
}

void AbstractWidget::record_original_data() {
    record_widget(this);
    for (QWidget* child : findChildren<QWidget*>()) {
        record_widget(child);
    }
    for (QLayout* layout : findChildren<QLayout*>()) {
        layout_data_.append({layout, layout->contentsMargins(), layout->spacing()});
    }
}

// The form's own font is scaled, and the fonts its children set themselves; the others inherit.
void AbstractWidget::record_widget(QWidget* widget) {
    const QWidget* parent = widget->parentWidget();
    const bool placed_by_layout = nullptr != parent && nullptr != parent->layout();
    const bool own_font = widget == this || widget->testAttribute(Qt::WA_SetFont);
    widget_data_.append({widget, widget->geometry(), widget->minimumSize(), widget->maximumSize(),
                         widget->font(), own_font, placed_by_layout});
}

void AbstractWidget::scale_widget(const AutoResizeOriginalData& data) {
    if (data.widget.isNull()) {
        return;
    }
    data.widget->setMinimumSize(scaled_size(data.minimum_size));
    data.widget->setMaximumSize(scaled_size(data.maximum_size));
    if (data.own_font) {
        data.widget->setFont(scaled_font(data.font));
    }
    if (!data.placed_by_layout) {
        const QRect& geometry = data.geometry;
        data.widget->setGeometry(scaled_width(geometry.x()), scaled_height(geometry.y()),
                                 scaled_width(geometry.width()), scaled_height(geometry.height()));
    }
}

void AbstractWidget::scale_layout(const AutoLayoutOriginalData& data) {
    if (data.layout.isNull()) {
        return;
    }
    const QMargins& margins = data.margins;
    data.layout->setContentsMargins(scaled_width(margins.left()), scaled_height(margins.top()),
                                    scaled_width(margins.right()), scaled_height(margins.bottom()));
    if (data.spacing >= 0) {
        data.layout->setSpacing(Common::getCommonHandle()->getMinRatioSize(data.spacing));
    }
}
