// The per-gripper operations behind the script commands, and the wait for a move to end.
#include <QByteArray>
#include <QReadLocker>
#include <QStringList>

#include <string>
#include <vector>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper_main/business_logic/gripper_global/gripper_global.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "src/plugins/templateplugin/script_wake_observer.h"
#include "src/plugins/templateplugin/templateplugin.h"

namespace {

GripperDevice* device_at(int index) {
    return GripperGlobal::instance().get_device(static_cast<uint32_t>(index));
}

std::string utf8_of(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    return std::string(bytes.constData(), static_cast<size_t>(bytes.size()));
}

}  // namespace

// The driver of the entry at index for a command; null, with the reason logged, when there is
// none or while it reconnects by itself (commands then fail at once).
GripperLogicControl* TemplatePlugin::driver_at(int index) {
    GripperLogicControl* driver = slot_driver_at(index);
    if (nullptr != driver && driver->reconnecting()) {
        GRIPPER_LOG("W", "device->gripper_abstract_control_->reconnecting()");
        return nullptr;
    }
    return driver;
}

// The driver the entry at index holds, reconnecting or not.
GripperLogicControl* TemplatePlugin::slot_driver_at(int index) {
    GripperDevice* device = device_at(index);
    if (nullptr == device) {
        GRIPPER_LOG("W", "NULL == device");
        return nullptr;
    }
    if (nullptr == device->gripper_abstract_control_) {
        GRIPPER_LOG("W", "NULL == device->gripper_abstract_control_");
        return nullptr;
    }
    return device->gripper_abstract_control_;
}

// The Setting page exists once createUI has run on the interface thread; a command never makes
// it, so a host calling before createUI gets no page it did not ask for.
GripperSettingWidget* TemplatePlugin::setting_page() {
    if (!page_created_) {
        GRIPPER_LOG("W", "NULL == widget_");
        return nullptr;
    }
    GripperSettingWidget* page = GripperSettingWidget::instance();
    if (nullptr == page) {
        GRIPPER_LOG("W", "NULL == GripperSettingWidget::instance()");
    }
    return page;
}

bool TemplatePlugin::mode_connect(int index, const QString& type, const QString& parameters) {
    GRIPPER_LOG("D", "deviceId = %d", index);
    GripperDevice* device = device_at(index);
    if (nullptr == device) {
        GRIPPER_LOG("W", "NULL == device");
        return false;
    }
    GripperSettingWidget* page = setting_page();
    if (nullptr == page) {
        return false;
    }
    std::vector<std::string> list_parameters{std::to_string(index)};
    if (QStringLiteral("TCP_CLIENT") == type) {
        const QStringList parts = parameters.split(QLatin1Char(':'));
        list_parameters.push_back(utf8_of(parts.value(0)));
        list_parameters.push_back(utf8_of(parts.value(1)));
        page->connect_gripper(GripperCommunication::CC_TCP_CLIENT, list_parameters);
    } else if (QStringLiteral("USB_SERIAL") == type) {
        list_parameters.push_back(utf8_of(parameters));
        page->connect_gripper(GripperCommunication::CC_USB_SERIALPORT, list_parameters);
    }
    return nullptr != device->gripper_abstract_control_;
}

bool TemplatePlugin::device_scan() {
    GripperSettingWidget* page = setting_page();
    return nullptr != page && page->scan_gripper();
}

// Disconnects the gripper at index, whichever gripper the page shows.
bool TemplatePlugin::mode_disconnect(int index) {
    GripperSettingWidget* page = setting_page();
    if (nullptr == page || nullptr == slot_driver_at(index)) {
        return false;
    }
    page->disconnect_gripper(index);
    return true;
}

bool TemplatePlugin::debug_connect(int index, const QString&) {
    GripperSettingWidget* page = setting_page();
    if (nullptr == page) {
        return false;
    }
    page->connect_gripper_debug();
    GripperDevice* device = device_at(index);
    return nullptr != device && nullptr != device->gripper_abstract_control_;
}

bool TemplatePlugin::is_connect(int index) {
    GripperLogicControl* driver = driver_at(index);
    if (nullptr == driver) {
        return false;
    }
    if (GripperCommunication::CS_CONNECTED != driver->get_communication_status()) {
        GRIPPER_LOG("W", "communication_status()!= CS_CONNECTED)");
        return false;
    }
    return true;
}

// GS_TURNING does not count as activated.
bool TemplatePlugin::is_activate(int index) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr != driver && driver->takes_commands();
}

bool TemplatePlugin::is_gripped(int index) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr != driver && GripperLogicControl::GS_DETECTED == driver->get_gripper_status();
}

// Arrived means not moving: every other status counts, GS_UNDEFINE included.
bool TemplatePlugin::is_arrivate(int index) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr != driver && GripperLogicControl::GS_MOVING != driver->get_gripper_status();
}

bool TemplatePlugin::is_dropped(int index) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr != driver && GripperLogicControl::GS_DROPPED == driver->get_gripper_status();
}

int TemplatePlugin::get_status(int index) {
    GripperLogicControl* driver = driver_at(index);
    if (nullptr == driver) {
        return 0;
    }
    switch (driver->get_gripper_status()) {
        case GripperLogicControl::GS_MOVING:
            return 0;
        case GripperLogicControl::GS_ARRIVED:
            return 1;
        case GripperLogicControl::GS_DETECTED:
            return 2;
        case GripperLogicControl::GS_DROPPED:
            return 3;
        default:
            return -1;
    }
}

// Waits for an update cycle in progress, so a query right after a move sees its final position.
int TemplatePlugin::get_position(int index) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr == driver ? 0 : static_cast<int>(driver->get_position());
}

bool TemplatePlugin::set_activate(int index) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr != driver && driver->set_activate();
}

bool TemplatePlugin::set_force(int index, int force) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr != driver && driver->set_force(force);
}

bool TemplatePlugin::set_speed(int index, int speed) {
    GripperLogicControl* driver = driver_at(index);
    return nullptr != driver && driver->set_speed(speed);
}

bool TemplatePlugin::set_position(int index, int position, bool block) {
    GripperLogicControl* driver = driver_at(index);
    if (nullptr == driver) {
        return false;
    }
    if (!driver->set_position(static_cast<float>(position))) {
        GRIPPER_LOG("W", "!ret");
        return false;
    }
    return !block || wait_for_move(driver);
}

// Sleeps until the move ends: arrival, an object detected or dropped (true), the driver losing
// its state (false) or a stop of the robot program (false). A pause holds the wait; a link fault
// alone does not end it. There is no time-out.
bool TemplatePlugin::wait_for_move(GripperLogicControl* driver) {
    const ScriptWakeObserver::Watch observer = ScriptWakeObserver::watch(driver, &move_wakeup_);
    MoveWait state = MW_WAITING;
    move_wakeup_.wait([&] {
        state = move_wait_state(driver);
        return MW_WAITING != state;
    });
    if (MW_STOPPED == state) {
        GRIPPER_LOG("D", "TemplatePlugin::RobotScriptStatus::RSS_STOP == robot_script_status_");
    }
    return MW_FINISHED == state;
}

TemplatePlugin::MoveWait TemplatePlugin::move_wait_state(GripperLogicControl* driver) {
    {
        QReadLocker locker(&status_lock_);
        if (RSS_STOP == robot_script_status_) {
            return MW_STOPPED;
        }
        if (RSS_PAUSE == robot_script_status_) {
            return MW_WAITING;
        }
    }
    switch (driver->get_gripper_status()) {
        case GripperLogicControl::GS_UNDEFINE:
            return MW_LOST;
        case GripperLogicControl::GS_ARRIVED:
        case GripperLogicControl::GS_DETECTED:
        case GripperLogicControl::GS_DROPPED:
            return MW_FINISHED;
        default:
            return MW_WAITING;
    }
}
