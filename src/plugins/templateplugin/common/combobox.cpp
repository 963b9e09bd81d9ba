#include "src/plugins/templateplugin/common/combobox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QListWidget>

#include <algorithm>

#include "src/plugins/templateplugin/common/common.h"

namespace {

// The untranslated text of an item.
const int SOURCE_TEXT_ROLE = Qt::UserRole + 0x100;

}  // namespace

ComboBox::ComboBox(QWidget* parent)
    : QComboBox(parent), list_widget_(new QListWidget(this)), translatable_(false) {
    list_widget_->setWindowFlags(Qt::Popup);
    list_widget_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_widget_->hide();
    connect(list_widget_, SIGNAL(clicked(QModelIndex)), this, SLOT(slot_itemClicked(QModelIndex)));
}

void ComboBox::addItem(const QString& text, const QVariant& userData) {
    insertItem(count(), text, userData);
}

void ComboBox::addItems(const QStringList& texts) {
    insertItems(count(), texts);
}

void ComboBox::insertItem(int index, const QString& text, const QVariant& userData) {
    const int row = std::max(0, std::min(index, count()));
    QComboBox::insertItem(row, shown_text(text), userData);
    remember_source(row, text);
}

void ComboBox::insertItems(int index, const QStringList& texts) {
    int row = std::max(0, std::min(index, count()));
    for (const QString& text : texts) {
        insertItem(row++, text);
    }
}

void ComboBox::setItemText(int index, const QString& text) {
    QComboBox::setItemText(index, shown_text(text));
    remember_source(index, text);
}

void ComboBox::setTranslatable(bool translatable) {
    translatable_ = translatable;
    retranslate();
}

void ComboBox::setCurrentIndex(int index) {
    QComboBox::setCurrentIndex(index);
    if (list_widget_->isVisible()) {
        list_widget_->setCurrentRow(currentIndex());
    }
}

void ComboBox::setCurrentText(const QString& text) {
    const int row = translatable_ ? findData(text, SOURCE_TEXT_ROLE) : -1;
    if (row >= 0) {
        setCurrentIndex(row);
        return;
    }
    QComboBox::setCurrentText(text);
    setCurrentIndex(currentIndex());
}

QString ComboBox::currentSourceText() const {
    const QVariant source = currentData(SOURCE_TEXT_ROLE);
    return source.isValid() ? source.toString() : currentText();
}

void ComboBox::clear() {
    hidePopup();
    QComboBox::clear();
}

void ComboBox::showPopup() {
    if (count() < 1) {
        return;
    }
    fill_list();
    list_widget_->setGeometry(popup_geometry());
    list_widget_->show();
    list_widget_->setFocus();
}

void ComboBox::hidePopup() {
    list_widget_->hide();
}

void ComboBox::slot_itemClicked(const QModelIndex& index) {
    if (!index.isValid()) {
        return;
    }
    const int row = index.row();
    setCurrentIndex(row);
    hidePopup();
    emit activated(row);
#if QT_VERSION >= QT_VERSION_CHECK(5, 14, 0)
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    emit activated(itemText(row));
    QT_WARNING_POP
    emit textActivated(itemText(row));
#else
    emit activated(itemText(row));
#endif
}

void ComboBox::changeEvent(QEvent* event) {
    if (QEvent::LanguageChange == event->type()) {
        retranslate();
    }
    QComboBox::changeEvent(event);
}

QString ComboBox::shown_text(const QString& source) const {
    if (!translatable_) {
        return source;
    }
    return QCoreApplication::translate("ComboBox", source.toUtf8().constData());
}

void ComboBox::remember_source(int index, const QString& source) {
    QComboBox::setItemData(index, source, SOURCE_TEXT_ROLE);
}

void ComboBox::retranslate() {
    for (int row = 0; row < count(); ++row) {
        const QVariant source = itemData(row, SOURCE_TEXT_ROLE);
        if (source.isValid()) {
            QComboBox::setItemText(row, shown_text(source.toString()));
        }
    }
}

void ComboBox::fill_list() {
    const int row_height = Common::getCommonHandle()->getRowHeight();
    list_widget_->clear();
    list_widget_->setFont(font());
    for (int row = 0; row < count(); ++row) {
        QListWidgetItem* item = new QListWidgetItem(itemIcon(row), itemText(row), list_widget_);
        item->setSizeHint(QSize(width(), row_height));
    }
    list_widget_->setCurrentRow(currentIndex());
    if (nullptr != list_widget_->currentItem()) {
        list_widget_->scrollToItem(list_widget_->currentItem());
    }
}

// Below the combo box if it fits there, else above it; moved into the usable screen area.
QRect ComboBox::popup_geometry() const {
    const Common* common = Common::getCommonHandle();
    const QRect area(common->getScreenLeft(), common->getScreenTop(), common->getScreenWidth(),
                     common->getScreenHeight());
    const int rows = std::min(count(), static_cast<int>(MAX_VISIBLE_ROWS));
    const int frame = 2 * list_widget_->frameWidth();
    QRect popup(mapToGlobal(QPoint(0, height())),
                QSize(width(), std::min(rows * common->getRowHeight() + frame, area.height())));
    if (popup.bottom() > area.bottom()) {
        popup.moveBottom(mapToGlobal(QPoint(0, 0)).y() - 1);
    }
    popup.moveTop(std::max(area.top(), std::min(popup.top(), area.bottom() - popup.height() + 1)));
    popup.moveLeft(std::max(area.left(), std::min(popup.left(), area.right() - popup.width() + 1)));
    return popup;
}
