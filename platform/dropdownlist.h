#ifndef DROPDOWNLIST_H
#define DROPDOWNLIST_H

#include <QComboBox>

// The pendant's drop-down list widget.
class DropDownList : public QComboBox {
    Q_OBJECT

public:
    explicit DropDownList(QWidget* parent = nullptr);
};

#endif
