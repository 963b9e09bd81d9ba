#ifndef GRIPPER_WIDGET_H
#define GRIPPER_WIDGET_H

#include <QWidget>

namespace Ui {
class GripperWidget;
}

class GripperControlWidget;

// The plug-in's page in the pendant: the tabs "Control" (a new Control page) and "Setting" (the
// one Setting page of the process), in the pages' own style scaled to the pendant's screen.
// Makes sure the registry holds the first device record.
class GripperWidget : public QWidget {
    Q_OBJECT

public:
    explicit GripperWidget(QWidget* parent = nullptr);
    ~GripperWidget() override;

protected:
    // A new language: the tab texts again.
    void changeEvent(QEvent* event) override;

private:
    Ui::GripperWidget* ui;
};

#endif
