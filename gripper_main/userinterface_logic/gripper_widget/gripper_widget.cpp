#include "gripper_main/userinterface_logic/gripper_widget/gripper_widget.h"

#include <QEvent>
#include <QLayout>

#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "src/plugins/templateplugin/common/common.h"
#include "ui_gripper_widget.h"

GripperWidget::GripperWidget(QWidget* parent) : QWidget(parent), ui(new Ui::GripperWidget) {
    Q_INIT_RESOURCE(gripper_images);
    ui->setupUi(this);
    GripperGlobal& registry = GripperGlobal::instance();
    if (registry.vector_device().empty()) {
        registry.add_device(GripperGlobal::insert_device());
    }
    GripperControlWidget* control = new GripperControlWidget();
    ui->widget_control_->layout()->addWidget(control);
    GripperSettingWidget* setting = GripperSettingWidget::instance();
    if (nullptr != setting) {
        ui->widget_setting_->layout()->addWidget(setting);
        connect(setting, SIGNAL(devices_changed()), control, SLOT(update_ui()));
    }
    Common::getCommonHandle()->setRatioStyleSheet(this);
}

GripperWidget::~GripperWidget() {
    delete ui;
}

void GripperWidget::changeEvent(QEvent* event) {
    if (QEvent::LanguageChange == event->type()) {
        ui->retranslateUi(this);
    }
    QWidget::changeEvent(event);
}
