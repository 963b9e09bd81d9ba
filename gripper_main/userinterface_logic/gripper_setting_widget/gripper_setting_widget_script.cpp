// The Setting page's operations for script commands, called from the script thread (or, with the
// same results, from the interface thread). They reach the widgets only through calls run on the
// interface thread.
#include <QCoreApplication>
#include <QThread>

#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "ui_gripper_setting_widget.h"

namespace {

// While it lives, the page's operations run in place instead of on the command worker; only
// for a script call made on the interface thread (a null flag otherwise: the script thread does
// not touch the page, which may be deleted while it waits).
class InPlace {
public:
    explicit InPlace(bool* flag) : flag_(flag), previous_(nullptr != flag && *flag) {
        if (nullptr != flag_) {
            *flag_ = true;
        }
    }
    ~InPlace() {
        if (nullptr != flag_) {
            *flag_ = previous_;
        }
    }

private:
    bool* const flag_;
    const bool previous_;
};

QStringList to_string_list(const std::vector<std::string>& list) {
    QStringList texts;
    for (const std::string& text : list) {
        texts << QString::fromStdString(text);
    }
    return texts;
}

}  // namespace

// Queued even on the interface thread: the scan runs after the caller's event.
bool GripperSettingWidget::scan_gripper() {
    emit call_queued([this] {
        update_ui();
        on_push_button_scan__clicked();
    });
    return true;
}

bool GripperSettingWidget::connect_gripper(GripperCommunication::CommunicationConnection connection,
                                           const std::vector<std::string>& list_parameters) {
    if (list_parameters.empty()) {
        GRIPPER_LOG("W", "list_parameters.empty()");
        return false;
    }
    const QStringList parameters = to_string_list(list_parameters);
    int prepared = SP_FAILED;
    run_on_interface_thread(
        [&] { prepared = prepare_script_connect(static_cast<int>(connection), parameters); }, true);
    if (SP_PROCEED != prepared) {
        return SP_CONNECTED == prepared;
    }
    return connect_through_slots();
}

bool GripperSettingWidget::connect_gripper_debug() {
    int prepared = SP_FAILED;
    run_on_interface_thread([&] { prepared = prepare_debug_connect(); }, true);
    if (SP_PROCEED == prepared) {
        connect_through_slots();
    }
    return true;
}

bool GripperSettingWidget::disconnect_gripper() {
    bool connected = false;
    run_on_interface_thread([&] { connected = current_device_connected(); }, true);
    if (!connected) {
        return false;
    }
    return disconnect_through_slots();
}

bool GripperSettingWidget::disconnect_gripper(int index) {
    bool selected = false;
    run_on_interface_thread([&] { selected = select_device(index); }, true);
    return selected && disconnect_gripper();
}

// Steps of a script connect that read or write the page, on the interface thread.
int GripperSettingWidget::prepare_script_connect(int connection, const QStringList& parameters) {
    bool ok = false;
    const int index = parameters.value(0).toInt(&ok);
    if (!ok) {
        GRIPPER_LOG("W", "!ok");
        GRIPPER_LOG("W", "list_parameters[0] = %s", parameters.value(0).toLocal8Bit().constData());
        return SP_FAILED;
    }
    if (!select_device(index)) {
        return SP_FAILED;
    }
    GripperDevice* device = current_device();
    if (nullptr != device->gripper_abstract_control_) {
        GRIPPER_LOG("W", "device->gripper_abstract_control_");
        return SP_CONNECTED;
    }
    if (GripperCommunication::CC_TCP_CLIENT == connection) {
        if (3 != parameters.size()) {
            GRIPPER_LOG("W", "3 != list_parameters.size()");
            return SP_FAILED;
        }
        connection_type_ = QStringLiteral("TCP Client");
        ip_ = parameters.at(1);
        port_ = parameters.at(2);
    } else if (GripperCommunication::CC_USB_SERIALPORT == connection) {
        if (parameters.size() < 2) {
            GRIPPER_LOG("W", "2 > list_parameters.size()");
            return SP_FAILED;
        }
        connection_type_ = QStringLiteral("USB");
        // A pseudo-terminal stands for the one the last scan found.
        serialport_ = parameters.at(1);
        if (QStringLiteral("pts") == serialport_.section(QLatin1Char('/'), 2, 2)) {
            serialport_ = pts_port_;
        }
        GRIPPER_LOG("D", "serialport_ = %s", serialport_.toLocal8Bit().constData());
    } else {
        return SP_FAILED;
    }
    fields_changed_ = true;
    return SP_PROCEED;
}

int GripperSettingWidget::prepare_debug_connect() {
    GripperDevice* device = current_device();
    if (nullptr != device && nullptr != device->gripper_abstract_control_) {
        GRIPPER_LOG("W", "device->gripper_abstract_control_");
        return SP_CONNECTED;
    }
    connection_type_ = QStringLiteral("USB");
    GRIPPER_LOG("D", "serialport_ = %s", serialport_.toLocal8Bit().constData());
    fields_changed_ = true;
    return SP_PROCEED;
}

bool GripperSettingWidget::select_device(int index) {
    if (index < 0 || index >= ui->combo_box_node_->count() ||
        nullptr == GripperGlobal::instance().get_device(static_cast<uint32_t>(index))) {
        GRIPPER_LOG("W", "index < 0 || index >= combo_box_node_->count()");
        GRIPPER_LOG("W", "index = %d", index);
        return false;
    }
    ui->combo_box_node_->setCurrentIndex(index);
    device_index_ = ui->combo_box_node_->currentIndex();
    return true;
}

bool GripperSettingWidget::current_device_connected() {
    GripperDevice* device = current_device();
    return nullptr != device && nullptr != device->gripper_abstract_control_;
}

// False when the page was deleted meanwhile.
bool GripperSettingWidget::connect_through_slots() {
    const std::shared_ptr<Jobs> jobs = jobs_;
    const bool in_place = on_interface_thread();
    if (!disconnect_through_slots()) {
        return false;
    }
    const InPlace running_in_place(in_place ? &run_jobs_in_place_ : nullptr);
    run_on_interface_thread([this] { on_push_button_connect__clicked(); }, true);
    return in_place || wait_for_jobs(*jobs);
}

bool GripperSettingWidget::disconnect_through_slots() {
    const std::shared_ptr<Jobs> jobs = jobs_;
    const bool in_place = on_interface_thread();
    const InPlace running_in_place(in_place ? &run_jobs_in_place_ : nullptr);
    run_on_interface_thread(
        [this] {
            update_ui();
            on_push_button_disconnect__clicked();
        },
        true);
    return in_place || wait_for_jobs(*jobs);
}

// At once on the interface thread; from another thread queued to it, and with wait set the caller
// waits until the call has run.
void GripperSettingWidget::run_on_interface_thread(const std::function<void()>& call, bool wait) {
    if (on_interface_thread()) {
        call();
    } else if (wait) {
        emit call_blocking(call);
    } else {
        emit call_queued(call);
    }
}

// From the script thread: until the operations under way have stored their results (true) or
// the page is deleted (false).
bool GripperSettingWidget::wait_for_jobs(Jobs& jobs) {
    std::unique_lock<std::mutex> lock(jobs.mutex);
    jobs.done.wait(lock, [&jobs] { return jobs.closing || 0 == jobs.pending; });
    return !jobs.closing;
}

bool GripperSettingWidget::on_interface_thread() const {
    return QThread::currentThread() == thread();
}
