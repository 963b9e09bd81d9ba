#include "platform/dropdownlist.h"

DropDownList::DropDownList(QWidget* parent) : QComboBox(parent) {}
