// The Control page's buttons: minimum and maximum, and press-and-hold stepping.
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"
#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"
#include "ui_gripper_control_widget.h"

namespace {

// What a command sets; a newer command for the same quantity replaces one not yet sent.
enum Quantity { Q_POSITION = 1, Q_FORCE = 2, Q_SPEED = 3 };

bool decreases(int button) {
    return 1 == button % 2;
}

int clamped(int value, int low, int high) {
    return std::max(low, std::min(value, high));
}

}  // namespace

void GripperControlWidget::on_push_button_position_min__clicked() {
    send_limit(Q_POSITION, "!gripper_logic_control->set_position_min()",
               [](GripperLogicControl* driver) { return driver->set_position_min(); });
}

void GripperControlWidget::on_push_button_position_max__clicked() {
    send_limit(Q_POSITION, "!gripper_logic_control->set_position_max()",
               [](GripperLogicControl* driver) { return driver->set_position_max(); });
}

void GripperControlWidget::on_push_button_force_min__clicked() {
    send_limit(Q_FORCE, "!gripper_logic_control->set_force_min()",
               [](GripperLogicControl* driver) { return driver->set_force_min(); });
}

void GripperControlWidget::on_push_button_force_max__clicked() {
    send_limit(Q_FORCE, "!gripper_logic_control->set_force_max()",
               [](GripperLogicControl* driver) { return driver->set_force_max(); });
}

void GripperControlWidget::on_push_button_speed_min__clicked() {
    send_limit(Q_SPEED, "!gripper_logic_control->set_speed_min()",
               [](GripperLogicControl* driver) { return driver->set_speed_min(); });
}

void GripperControlWidget::on_push_button_speed_max__clicked() {
    send_limit(Q_SPEED, "!gripper_logic_control->set_speed_max()",
               [](GripperLogicControl* driver) { return driver->set_speed_max(); });
}

void GripperControlWidget::on_push_button_position_decrease__pressed() {
    press(PB_POSITION_DECREASE);
}

void GripperControlWidget::on_push_button_position_increase__pressed() {
    press(PB_POSITION_INCREASE);
}

void GripperControlWidget::on_push_button_position_decrease__released() {
    release(PB_POSITION_DECREASE);
}

void GripperControlWidget::on_push_button_position_increase__released() {
    release(PB_POSITION_INCREASE);
}

void GripperControlWidget::on_push_button_force_decrease__pressed() {
    press(PB_FORCE_DECREASE);
}

void GripperControlWidget::on_push_button_force_increase__pressed() {
    press(PB_FORCE_INCREASE);
}

void GripperControlWidget::on_push_button_force_decrease__released() {
    release(PB_FORCE_DECREASE);
}

void GripperControlWidget::on_push_button_force_increase__released() {
    release(PB_FORCE_INCREASE);
}

void GripperControlWidget::on_push_button_speed_decrease__pressed() {
    press(PB_SPEED_DECREASE);
}

void GripperControlWidget::on_push_button_speed_increase__pressed() {
    press(PB_SPEED_INCREASE);
}

void GripperControlWidget::on_push_button_speed_decrease__released() {
    release(PB_SPEED_DECREASE);
}

void GripperControlWidget::on_push_button_speed_increase__released() {
    release(PB_SPEED_INCREASE);
}

void GripperControlWidget::press(PressedButton button) {
    press_timer_->start(PRESS_DELAY_MS);
    pressed_button_ = button;
}

// The hold delay has passed: the repeat starts; then every tick steps the field.
void GripperControlWidget::on_timeout() {
    if (!repeat_timer_->isActive()) {
        repeat_timer_->start(REPEAT_INTERVAL_MS);
        return;
    }
    step_field();
}

void GripperControlWidget::release(PressedButton button) {
    GripperLogicControl* driver = current_driver();
    if (nullptr != driver) {
        if (press_timer_->remainingTime() < 1) {
            send_field(button, driver);
        } else {
            send_step(button, driver);
        }
    }
    press_timer_->stop();
    repeat_timer_->stop();
    pressed_button_ = PB_NONE;
}

// One step of the held button's field, within the driver's limits; nothing is sent.
void GripperControlWidget::step_field() {
    GripperLogicControl* driver = current_driver();
    if (nullptr == driver || PB_NONE == pressed_button_) {
        return;
    }
    const int sign = decreases(pressed_button_) ? -1 : 1;
    bool ok = false;
    if (PB_POSITION_DECREASE == pressed_button_ || PB_POSITION_INCREASE == pressed_button_) {
        const double position = ui->line_edit_position_->text().toDouble(&ok);
        const double stepped =
            std::max<double>(driver->get_position_min(),
                             std::min<double>(position + sign * 1.0, driver->get_position_max()));
        if (ok) {
            ui->line_edit_position_->setText(QString::number(stepped, 'f', 1));
        }
    } else if (PB_FORCE_DECREASE == pressed_button_ || PB_FORCE_INCREASE == pressed_button_) {
        const int force = ui->line_edit_force_->text().toInt(&ok);
        if (ok) {
            ui->line_edit_force_->setText(QString::number(
                clamped(force + sign, driver->get_force_min(), driver->get_force_max())));
        }
    } else {
        const int speed = ui->line_edit_speed_->text().toInt(&ok);
        if (ok) {
            ui->line_edit_speed_->setText(QString::number(
                clamped(speed + sign, driver->get_speed_min(), driver->get_speed_max())));
        }
    }
    if (!ok) {
        GRIPPER_LOG("W", "!ok");
    }
}

// After a hold: the shown value (one further position step beyond it) is sent.
void GripperControlWidget::send_field(PressedButton button, GripperLogicControl* driver) {
    const int sign = decreases(button) ? -1 : 1;
    bool ok = false;
    if (PB_POSITION_DECREASE == button || PB_POSITION_INCREASE == button) {
        const float position = ui->line_edit_position_->text().toFloat(&ok);
        if (ok) {
            send_position(driver, position, sign < 0);
        }
    } else if (PB_FORCE_DECREASE == button || PB_FORCE_INCREASE == button) {
        const int force = clamped(ui->line_edit_force_->text().toInt(&ok) + sign,
                                  driver->get_force_min(), driver->get_force_max());
        if (ok) {
            send(driver, Q_FORCE, "!device->gripper_abstract_control_->set_force(force)",
                 [force](GripperLogicControl* d) { return d->set_force(force); });
        }
    } else {
        const int speed = clamped(ui->line_edit_speed_->text().toInt(&ok) + sign,
                                  driver->get_speed_min(), driver->get_speed_max());
        if (ok) {
            send(driver, Q_SPEED, "!device->gripper_abstract_control_->set_speed(speed)",
                 [speed](GripperLogicControl* d) { return d->set_speed(speed); });
        }
    }
    if (!ok) {
        GRIPPER_LOG("W", "!ok");
    }
}

void GripperControlWidget::send_position(GripperLogicControl* driver, float position, bool down) {
    const float target =
        down ? position - driver->position_step() : position + driver->position_step();
    GRIPPER_LOG("D", "position = %f", static_cast<double>(position));
    if (down) {
        GRIPPER_LOG("D", "position - device->gripper_abstract_control_->position_step() = %f",
                    static_cast<double>(target));
    } else {
        GRIPPER_LOG("D", "position + device->gripper_abstract_control_->position_step() = %f",
                    static_cast<double>(target));
    }
    send(driver, Q_POSITION,
         down ? "!device->gripper_abstract_control_->set_position(position - "
                "device->gripper_abstract_control_->position_step())"
              : "!device->gripper_abstract_control_->set_position(position + "
                "device->gripper_abstract_control_->position_step())",
         [target](GripperLogicControl* d) { return d->set_position(target); });
}

// After a short click: the gripper's last known value, stepped once, without clamping.
void GripperControlWidget::send_step(PressedButton button, GripperLogicControl* driver) {
    const bool down = decreases(button);
    if (PB_POSITION_DECREASE == button || PB_POSITION_INCREASE == button) {
        send_position(driver, driver->cached_position(), down);
    } else if (PB_FORCE_DECREASE == button || PB_FORCE_INCREASE == button) {
        const int force = driver->cached_force() + (down ? -1 : 1);
        send(driver, Q_FORCE,
             down ? "!device->gripper_abstract_control_->set_force(force - 1)"
                  : "!device->gripper_abstract_control_->set_force(force + 1)",
             [force](GripperLogicControl* d) { return d->set_force(force); });
    } else {
        const int speed = driver->cached_speed() + (down ? -1 : 1);
        send(driver, Q_SPEED,
             down ? "!device->gripper_abstract_control_->set_speed(speed - 1)"
                  : "!device->gripper_abstract_control_->set_speed(speed + 1)",
             [speed](GripperLogicControl* d) { return d->set_speed(speed); });
    }
}

void GripperControlWidget::send_limit(int quantity, const char* failure, const Command& command) {
    GripperLogicControl* gripper_logic_control = current_driver();
    if (nullptr == gripper_logic_control) {
        GRIPPER_LOG("W", "NULL == gripper_logic_control");
        return;
    }
    send(gripper_logic_control, quantity, failure, command);
}

// The command runs on the moves' worker; a failure is logged there.
void GripperControlWidget::send(GripperLogicControl* driver, int quantity, const char* failure,
                                const Command& command) {
    GripperCommandWorker::moves().post(
        this,
        [driver, failure, command] {
            if (!command(driver)) {
                GRIPPER_LOG("W", "%s", failure);
            }
            return GripperCommandWorker::Completion();
        },
        GripperCommandWorker::Key{driver, quantity});
}
