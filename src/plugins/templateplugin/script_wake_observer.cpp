#include "src/plugins/templateplugin/script_wake_observer.h"

#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "src/plugins/templateplugin/script_wakeup.h"

ScriptWakeObserver::Watch ScriptWakeObserver::watch(GripperLogicControl* driver,
                                                    ScriptWakeup* wakeup) {
    Watch observer(new ScriptWakeObserver(driver, wakeup));
    driver->add_notify_interface(observer.get());
    return observer;
}

ScriptWakeObserver::ScriptWakeObserver(GripperLogicControl* driver, ScriptWakeup* wakeup)
    : driver_(driver), wakeup_(wakeup) {}

void ScriptWakeObserver::End::operator()(ScriptWakeObserver* observer) const {
    observer->driver_->detach_notify_interface(observer);
    ObjectKeeper::instance().retire(observer);
}

void ScriptWakeObserver::on_gripper_move_status_changed(GripperLogicControl*,
                                                        GripperLogicControl::GripperStatus) {
    wakeup_->wake();
}
