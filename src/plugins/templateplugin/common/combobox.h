#ifndef SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_COMBOBOX_H
#define SRC_PLUGINS_TEMPLATEPLUGIN_COMMON_COMBOBOX_H

#include <QComboBox>
#include <QModelIndex>
#include <QStringList>
#include <QVariant>

class QListWidget;

// A combo box whose list is its own QListWidget, shown as a popup with rows of the scaled row
// height (at most 9 rows, then it scrolls) and kept inside the usable screen area of Common.
// With setTranslatable(true) the item texts are taken as source texts of the context
// "ComboBox" and translated again whenever the application's language changes; setCurrentText
// then also takes an item's source text, and currentSourceText() gives it back, whatever the
// language shown.
class ComboBox : public QComboBox {
    Q_OBJECT

public:
    static const int MAX_VISIBLE_ROWS = 9;

    explicit ComboBox(QWidget* parent = nullptr);

    void addItem(const QString& text, const QVariant& userData = QVariant());
    void addItems(const QStringList& texts);
    void insertItem(int index, const QString& text, const QVariant& userData = QVariant());
    void insertItems(int index, const QStringList& texts);
    void setItemText(int index, const QString& text);
    void setTranslatable(bool translatable);
    bool isTranslatable() const { return translatable_; }
    void setCurrentIndex(int index);
    void setCurrentText(const QString& text);
    // The untranslated text of the current item ("" with none).
    QString currentSourceText() const;
    void clear();
    void showPopup() override;
    void hidePopup() override;
    // The popup list (for tests and styling).
    QListWidget* popupList() const { return list_widget_; }

public slots:
    void slot_itemClicked(const QModelIndex& index);

protected:
    void changeEvent(QEvent* event) override;

private:
    QString shown_text(const QString& source) const;
    void remember_source(int index, const QString& source);
    void retranslate();
    void fill_list();
    QRect popup_geometry() const;

    QListWidget* list_widget_;
    bool translatable_;
};

#endif
