// The Setting page's link operations: scan, connect, activate, disconnect.
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QSerialPortInfo>

#include <algorithm>

#include "gripper/gripper_common/miscellaneous_utility/miscellaneous_utility.h"
#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"
#include "gripper_main/userinterface_logic/gripper_link_options/gripper_link_options.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_connect_attempt.h"
#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"
#include "gripper_main/userinterface_logic/gripper_stable_port_name/gripper_stable_port_name.h"
#include "ui_gripper_setting_widget.h"

namespace {

typedef GripperCommandWorker::Completion Completion;

std::vector<std::string> parameters_of(const GripperDevice* device,
                                       GripperCommunication::CommunicationConnection connection) {
    const auto found = device->map_connection_parameters_.find(connection);
    if (device->map_connection_parameters_.end() == found) {
        return std::vector<std::string>();
    }
    return found->second;
}

QByteArray first_bytes(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QByteArray();
    }
    return file.read(4);
}

int registry_index(GripperDevice* device) {
    const std::vector<GripperDevice*> devices = GripperGlobal::instance().vector_device();
    const auto found = std::find(devices.begin(), devices.end(), device);
    return devices.end() == found ? -1 : static_cast<int>(found - devices.begin());
}

bool in_registry(GripperDevice* device) {
    return registry_index(device) >= 0;
}

}  // namespace

void GripperSettingWidget::on_push_button_scan__clicked() {
    ui->combo_box_usb_->clear();
    if (read_pts_file()) {
        list_system_ports();
        walk_usb_devices();
    }
    update_ui();
}

// The pseudo-terminal a simulator announced ("PTY is /dev/pts/3") comes first in the list.
// False when the file holds no path: the scan ends there.
bool GripperSettingWidget::read_pts_file() {
    QFile pts_file(QStringLiteral("/tmp/pts"));
    if (!pts_file.open(QIODevice::OpenModeFlag::ReadOnly)) {
        GRIPPER_LOG("W", "!pts_file.open(QIODevice::OpenModeFlag::ReadOnly");
        return true;
    }
    const QString line = QString::fromLocal8Bit(pts_file.readLine()).trimmed();
    const int at = line.indexOf(QStringLiteral("is "));
    pts_port_ = at < 0 ? QString() : line.mid(at + 3);
    if (0 == pts_port_.length()) {
        GRIPPER_LOG("W", "0 == pts_str.length()");
        return false;
    }
    GRIPPER_LOG("D", "pts_port = %s", pts_port_.toLocal8Bit().constData());
    ui->combo_box_usb_->addItem(pts_port_);
    return true;
}

// Each port under its stable by-id name where it has one.
void GripperSettingWidget::list_system_ports() {
    for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts()) {
        ui->combo_box_usb_->addItem(
            GripperStablePortName::of(QStringLiteral("/dev/") + port.portName()));
    }
}

// Reads the ids of every USB device and notes the known serial adapters in the log; the list of
// ports is not filtered by it.
void GripperSettingWidget::walk_usb_devices() {
    QMap<QString, QString> adapters;
    adapters.insert(QStringLiteral("6001"), QStringLiteral("0403"));
    adapters.insert(QStringLiteral("5740"), QStringLiteral("0483"));
    const QDir root_dir(QStringLiteral("/sys/bus/usb/devices/"));
    if (!root_dir.exists()) {
        GRIPPER_LOG("W", "!root_dir.exists()");
        return;
    }
    const QFileInfoList root_file_info_list =
        root_dir.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System);
    if (0 == root_file_info_list.size()) {
        GRIPPER_LOG("W", "0 == root_file_info_list.size()");
    }
    for (const QFileInfo& entry : root_file_info_list) {
        const QString vendor = QString::fromLatin1(first_bytes(entry.filePath() + "/idVendor"));
        const QString product =
            vendor.isEmpty() ? QString()
                             : QString::fromLatin1(first_bytes(entry.filePath() + "/idProduct"));
        if (!product.isEmpty() && adapters.value(product) == vendor) {
            GRIPPER_LOG("D", "serial adapter %s:%s at %s", vendor.toLatin1().constData(),
                        product.toLatin1().constData(), entry.fileName().toLocal8Bit().constData());
        }
    }
}

void GripperSettingWidget::on_push_button_connect__clicked() {
    GripperDevice* device = current_device();
    if (nullptr == device) {
        GRIPPER_LOG("W", "NULL == device");
        return;
    }
    if (nullptr != device->gripper_abstract_control_) {
        GRIPPER_LOG("W", "device->gripper_abstract_control_");
        return;
    }
    if (busy_devices_.count(device) > 0) {
        GRIPPER_LOG("W", "busy_devices_.count(device) > 0");
        return;
    }
    const QString type = ui->combo_box_type_->currentSourceText();
    if (QStringLiteral("TCP Client") == type) {
        if (!take_tcp_parameters(device)) {
            return;
        }
        // Over TCP whatever the slot held before: a list that is not a TCP one fails the connect.
        start_connect(device, GripperCommunication::CC_TCP_CLIENT);
    } else if (QStringLiteral("USB") == type) {
        take_usb_parameters(device);
        start_connect(device, GripperCommunication::CC_USB_SERIALPORT);
    } else {
        GRIPPER_LOG("W", "unknown type: %s!", type.toLocal8Bit().constData());
    }
}

// A bad address stops the connect; a bad port does not: the device's held list is used.
bool GripperSettingWidget::take_tcp_parameters(GripperDevice* device) {
    const std::string ip = ui->line_edit_ip_->text().toStdString();
    if (!MiscellaneousUtility::is_valid_ip(ip)) {
        GRIPPER_LOG("W", "!MiscellaneousUtility::is_valid_ip(ip)");
        GRIPPER_LOG("W", "ip = %s", ip.c_str());
        GRIPPER_LOG("W", "!valid");
        return false;
    }
    ip_ = QString::fromStdString(ip);
    const std::string port = ui->line_edit_port_->text().toStdString();
    if (MiscellaneousUtility::is_valid_port(port)) {
        port_ = QString::fromStdString(port);
        device->connection_type_ = GripperCommunication::CC_TCP_CLIENT;
        device->map_connection_parameters_[GripperCommunication::CC_TCP_CLIENT] = {
            MiscellaneousUtility::connect_operate_to_string(MiscellaneousUtility::CO_MANUAL), ip,
            port};
    } else {
        GRIPPER_LOG("W", "!MiscellaneousUtility::is_valid_port(port)");
        GRIPPER_LOG("W", "port = %s", port.c_str());
    }
    return true;
}

void GripperSettingWidget::take_usb_parameters(GripperDevice* device) {
    device->connection_type_ = GripperCommunication::CC_USB_SERIALPORT;
    if (ui->combo_box_usb_->count() < 1) {
        GRIPPER_LOG("W", "combo_box_usb_->count() < 1");
        return;
    }
    const QString path = ui->combo_box_usb_->currentText();
    if (!QFile::exists(path)) {
        GRIPPER_LOG("W", "path = %s", path.toLocal8Bit().constData());
        return;
    }
    device->map_connection_parameters_[GripperCommunication::CC_USB_SERIALPORT] = {
        MiscellaneousUtility::connect_operate_to_string(MiscellaneousUtility::CO_MANUAL),
        path.toStdString()};
}

void GripperSettingWidget::on_push_button_activate__clicked() {
    GripperDevice* device = current_device();
    GripperLogicControl* gripper_logic_control =
        nullptr != device ? device->gripper_abstract_control_ : nullptr;
    if (nullptr == gripper_logic_control) {
        GRIPPER_LOG("W", "NULL == gripper_logic_control");
        return;
    }
    run_job([gripper_logic_control] {
        if (!gripper_logic_control->set_activate()) {
            GRIPPER_LOG("W", "!gripper_logic_control->set_activate()");
        }
        return Completion();
    });
}

void GripperSettingWidget::on_push_button_disconnect__clicked() {
    GRIPPER_LOG("D", "on_push_button_disconnect__clicked");
    GripperDevice* device = current_device();
    if (nullptr == device || nullptr == device->gripper_abstract_control_) {
        GRIPPER_LOG("W", "NULL == device->gripper_abstract_control_");
        return;
    }
    if (busy_devices_.count(device) > 0) {
        GRIPPER_LOG("W", "busy_devices_.count(device) > 0");
        return;
    }
    start_disconnect(device);
}

// With the parameter list the device holds for its link type (which a rejected TCP port leaves
// as it was).
void GripperSettingWidget::start_connect(GripperDevice* device,
                                         GripperCommunication::CommunicationConnection connection) {
    const std::vector<std::string> parameters = parameters_of(
        device,
        static_cast<GripperCommunication::CommunicationConnection>(device->connection_type_));
    GripperLogicControl::NotifyInterface* notify = this;
    GripperSettingWidget* page = this;
    const int index = registry_index(device);
    job_started(device);
    run_job([page, notify, device, connection, parameters, index] {
        GripperConnectAttempt attempt;
        GripperLogicControl* driver = attempt.run(notify, connection, parameters);
        GripperLinkOptions::apply(index, driver);
        page->note_driver(driver);
        const QString failure = QString::fromStdString(attempt.failure().sentence);
        return Completion([page, device, driver, failure] {
            page->run_on_interface_thread(
                [page, device, driver, failure] {
                    page->connect_finished(device, driver, failure);
                },
                false);
        });
    });
}

void GripperSettingWidget::connect_finished(GripperDevice* device, GripperLogicControl* driver,
                                            const QString& failure) {
    device->gripper_abstract_control_ = driver;
    connect_failures_.erase(device);
    if (nullptr == driver) {
        GRIPPER_LOG("W", "NULL == device->gripper_abstract_control_");
        connect_failures_[device] = failure;
    }
    job_finished(device);
    if (nullptr != driver && !in_registry(device)) {
        start_disconnect(device);
    }
    retire_if_removed(device);
    update_ui();
    emit devices_changed();
}

void GripperSettingWidget::start_disconnect(GripperDevice* device) {
    GripperLogicControl* driver = device->gripper_abstract_control_;
    GripperSettingWidget* page = this;
    job_started(device);
    run_job([page, device, driver] {
        const bool destroyed = GripperConnectionManager::instance().destroy(driver);
        if (!destroyed) {
            GRIPPER_LOG("W",
                        "!G_GRIPPER_CONNECTION_MANAGER->destroy(device->gripper_abstract_control_");
        }
        return Completion([page, device, driver, destroyed] {
            page->run_on_interface_thread(
                [page, device, driver, destroyed] {
                    page->disconnect_finished(device, driver, destroyed);
                },
                false);
        });
    });
}

void GripperSettingWidget::disconnect_finished(GripperDevice* device, GripperLogicControl* driver,
                                               bool destroyed) {
    if (destroyed) {
        // Out of the record first: a reader that begins after the retirement cannot find it.
        if (device->gripper_abstract_control_ == driver) {
            device->gripper_abstract_control_ = nullptr;
        }
        ObjectKeeper::instance().retire(driver);
    }
    job_finished(device);
    retire_if_removed(device);
    update_ui();
    emit devices_changed();
}

void GripperSettingWidget::run_job(const std::function<Completion()>& work) {
    if (run_jobs_in_place_) {
        const Completion completion = work();
        if (completion) {
            completion();
        }
        return;
    }
    GripperCommandWorker::instance().post(this, work);
}

void GripperSettingWidget::job_started(GripperDevice* device) {
    busy_devices_.insert(device);
    {
        std::lock_guard<std::mutex> lock(jobs_->mutex);
        ++jobs_->pending;
    }
    update_ui();
}

void GripperSettingWidget::job_finished(GripperDevice* device) {
    busy_devices_.erase(device);
    {
        std::lock_guard<std::mutex> lock(jobs_->mutex);
        --jobs_->pending;
    }
    jobs_->done.notify_all();
}

// A record taken out of the registry is freed once no operation of the page holds it any more.
void GripperSettingWidget::retire_if_removed(GripperDevice* device) {
    if (0 == busy_devices_.count(device) && nullptr == device->gripper_abstract_control_ &&
        !in_registry(device)) {
        ObjectKeeper::instance().retire(device);
    }
}

void GripperSettingWidget::note_driver(GripperLogicControl* driver) {
    if (nullptr == driver) {
        return;
    }
    std::lock_guard<std::mutex> lock(jobs_mutex_);
    drivers_.insert(driver);
}
