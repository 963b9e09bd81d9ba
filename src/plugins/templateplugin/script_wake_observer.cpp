#include "src/plugins/templateplugin/script_wake_observer.h"

#include "src/plugins/templateplugin/script_wakeup.h"

ScriptWakeObserver::ScriptWakeObserver(GripperLogicControl* driver, ScriptWakeup* wakeup)
    : driver_(driver), wakeup_(wakeup) {
    driver_->add_notify_interface(this);
}

ScriptWakeObserver::~ScriptWakeObserver() {
    driver_->remove_notify_interface(this);
}

void ScriptWakeObserver::on_gripper_move_status_changed(GripperLogicControl*,
                                                        GripperLogicControl::GripperStatus) {
    wakeup_->wake();
}
