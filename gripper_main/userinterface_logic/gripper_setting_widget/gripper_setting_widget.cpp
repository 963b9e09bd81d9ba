#include "gripper_main/userinterface_logic/gripper_setting_widget/gripper_setting_widget.h"

#include <QCoreApplication>
#include <QEvent>
#include <QIntValidator>
#include <QPixmap>
#include <QRegularExpression>
#include <QRegularExpressionValidator>
#include <QThread>

#include <algorithm>

#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"
#include "gripper_main/userinterface_logic/gripper_link_options/gripper_link_options.h"
#include "gripper_main/userinterface_logic/gripper_status_text/gripper_status_text.h"
#include "src/plugins/templateplugin/common/common.h"
#include "ui_gripper_setting_widget.h"

namespace {

const char IP_PATTERN[] =
    "^((2[0-4]\\d|25[0-5]|[01]?\\d\\d?)\\.){3}(2[0-4]\\d|25[0-5]|[01]?\\d\\d?)$";
const int DEVICE_COUNT_MAX = 4;

std::atomic<GripperSettingWidget*> s_instance(nullptr);

void set_point_size(QWidget* widget, int point_size) {
    QFont font = widget->font();
    if (font.pointSize() != point_size) {
        font.setPointSize(point_size);
        widget->setFont(font);
    }
}

}  // namespace

GripperSettingWidget* GripperSettingWidget::instance() {
    GripperSettingWidget* page = s_instance.load();
    if (nullptr != page) {
        return page;
    }
    const QCoreApplication* application = QCoreApplication::instance();
    if (nullptr == application || QThread::currentThread() != application->thread()) {
        GRIPPER_LOG("W", "nullptr == s_instance && QThread::currentThread() != qApp->thread()");
        return nullptr;
    }
    page = new GripperSettingWidget();
    s_instance = page;
    return page;
}

GripperSettingWidget::GripperSettingWidget(QWidget* parent)
    : QWidget(parent),
      ui(new Ui::GripperSettingWidget),
      link_options_(nullptr),
      device_index_(0),
      device_count_index_(0),
      previous_count_index_(0),
      fields_changed_(true),
      run_jobs_in_place_(false),
      update_queued_(false),
      jobs_(std::make_shared<Jobs>()) {
    Q_INIT_RESOURCE(gripper_images);
    setup_form();
    const auto run = [](const std::function<void()>& call) { call(); };
    connect(this, &GripperSettingWidget::call_queued, this, run, Qt::QueuedConnection);
    connect(this, &GripperSettingWidget::call_blocking, this, run, Qt::BlockingQueuedConnection);
    GripperGlobal::instance().add_notify_interface(this);
    GripperConnectionManager::instance().add_notify_interface(this);
    ui->combo_box_type_->setTranslatable(true);
    ui->combo_box_type_->addItem(QString::fromLatin1(QT_TRANSLATE_NOOP("ComboBox", "TCP Client")));
    ui->combo_box_type_->addItem(QString::fromLatin1(QT_TRANSLATE_NOOP("ComboBox", "USB")));
    for (int count = 1; count <= DEVICE_COUNT_MAX; ++count) {
        ui->combo_box_index_->addItem(QString::number(count));
    }
    connection_type_ = QStringLiteral("USB");
    ip_ = QStringLiteral("192.168.1.29");
    port_ = QStringLiteral("8888");
    ui->combo_box_index_->setCurrentIndex(DEVICE_COUNT_MAX - 1);
    ui->combo_box_node_->addItem(QStringLiteral("1"));
    previous_count_index_ = device_count_index_ = 0;
    on_combo_box_index__activated(QString());
    device_index_ = 0;
    update_ui();
}

GripperSettingWidget::~GripperSettingWidget() {
    const ObjectKeeper::Section section;
    GripperCommandWorker::instance().release(this);
    GripperConnectionManager::instance().remove_notify_interface(this);
    GripperGlobal::instance().remove_notify_interface(this);
    std::set<GripperLogicControl*> drivers;
    {
        std::lock_guard<std::mutex> lock(jobs_mutex_);
        drivers.swap(drivers_);
    }
    {
        std::lock_guard<std::mutex> lock(jobs_->mutex);
        jobs_->closing = true;
    }
    jobs_->done.notify_all();
    for (GripperLogicControl* driver : drivers) {
        driver->remove_notify_interface(this);
    }
    GripperSettingWidget* self = this;
    s_instance.compare_exchange_strong(self, nullptr);
    delete ui;
}

void GripperSettingWidget::setup_form() {
    ui->setupUi(this);
    ui->line_edit_ip_->setWhatsThis(QStringLiteral("1"));
    ui->line_edit_port_->setWhatsThis(QStringLiteral("1"));
    ui->line_edit_ip_->setValidator(new QRegularExpressionValidator(
        QRegularExpression(QString::fromLatin1(IP_PATTERN)), ui->line_edit_ip_));
    ui->line_edit_port_->setValidator(new QIntValidator(1024, 65535, ui->line_edit_port_));
    link_options_ = new GripperLinkOptions(ui->group_box_link_);
    ui->grid_layout_link_->addWidget(link_options_, 2, 0, 1, 3);
    connect(link_options_, &GripperLinkOptions::changed, this,
            &GripperSettingWidget::link_options_changed);
    const Common* common = Common::getCommonHandle();
    ui->label_logo_->setPixmap(
        QPixmap(QStringLiteral(":/Image/Image/logo_EN.png"))
            .scaled(common->getRatioSize(220, 56), Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

void GripperSettingWidget::changeEvent(QEvent* event) {
    if (QEvent::LanguageChange == event->type()) {
        ui->retranslateUi(this);
        update_ui();
    }
    QWidget::changeEvent(event);
}

void GripperSettingWidget::update_ui() {
    const ObjectKeeper::Section section;
    update_queued_ = false;
    apply_fonts();
    apply_fields();
    setEnabled(GripperGlobal::PS_RUNNING != GripperGlobal::instance().get_program_state());
    GripperDevice* device = current_device();
    link_options_->show_device(device_index_);
    apply_enabled(device);
    apply_status(device);
}

// A connected gripper takes the operator's new options at once.
void GripperSettingWidget::link_options_changed(int index) {
    GripperDevice* device = GripperGlobal::instance().get_device(static_cast<uint32_t>(index));
    if (nullptr != device) {
        GripperLinkOptions::apply(index, device->gripper_abstract_control_);
    }
}

void GripperSettingWidget::apply_fonts() {
    for (QWidget* widget :
         {static_cast<QWidget*>(ui->combo_box_type_), static_cast<QWidget*>(ui->line_edit_ip_),
          static_cast<QWidget*>(ui->line_edit_port_), static_cast<QWidget*>(ui->combo_box_usb_),
          static_cast<QWidget*>(ui->push_button_scan_), static_cast<QWidget*>(ui->label_status_)}) {
        set_point_size(widget, 16);
    }
    for (QWidget* widget :
         {ui->push_button_connect_, ui->push_button_activate_, ui->push_button_disconnect_}) {
        set_point_size(widget, 18);
    }
}

// The link fields are written into the form when they were given (construction, a script), so
// that a redraw never throws away what the operator is typing.
void GripperSettingWidget::apply_fields() {
    if (!fields_changed_) {
        return;
    }
    fields_changed_ = false;
    ui->combo_box_type_->setCurrentText(connection_type_);
    ui->stacked_widget_->setCurrentWidget(usb_selected() ? ui->widget_usb_
                                                         : ui->widget_tcp_client_);
    ui->line_edit_ip_->setText(ip_);
    ui->line_edit_port_->setText(port_);
    if (!serialport_.isEmpty() && ui->combo_box_usb_->findText(serialport_) < 0) {
        ui->combo_box_usb_->addItem(serialport_);
    }
    ui->combo_box_usb_->setCurrentText(serialport_);
}

void GripperSettingWidget::apply_enabled(GripperDevice* device) {
    const bool connected = nullptr != device && nullptr != device->gripper_abstract_control_;
    const bool busy = nullptr != device && busy_devices_.count(device) > 0;
    for (QWidget* widget :
         {static_cast<QWidget*>(ui->combo_box_type_), static_cast<QWidget*>(ui->line_edit_ip_),
          static_cast<QWidget*>(ui->line_edit_port_),
          static_cast<QWidget*>(ui->push_button_connect_),
          static_cast<QWidget*>(ui->combo_box_usb_),
          static_cast<QWidget*>(ui->push_button_scan_)}) {
        widget->setEnabled(!connected && !busy);
    }
    ui->push_button_activate_->setEnabled(connected && !busy);
    ui->push_button_disconnect_->setEnabled(connected && !busy);
    if (usb_selected() && ui->combo_box_usb_->count() < 1) {
        ui->push_button_connect_->setEnabled(false);
    }
}

void GripperSettingWidget::apply_status(GripperDevice* device) {
    GripperLogicControl* driver = nullptr != device ? device->gripper_abstract_control_ : nullptr;
    const bool busy = nullptr != device && busy_devices_.count(device) > 0;
    ui->label_status_->setToolTip(failure_sentence(device));
    if (busy) {
        GripperStatusText::show(ui->label_status_,
                                nullptr == driver ? tr("Connecting") : tr("Disconnecting"),
                                QStringLiteral("busy"));
        return;
    }
    GripperStatusText::show(ui->label_status_, GripperStatusText::of(driver),
                            GripperStatusText::tone(driver));
}

// The sentence of the link's last failure: the driver's, or without one the failed connect's.
QString GripperSettingWidget::failure_sentence(GripperDevice* device) const {
    if (nullptr == device) {
        return QString();
    }
    if (nullptr != device->gripper_abstract_control_) {
        return QString::fromStdString(device->gripper_abstract_control_->last_failure().sentence);
    }
    const auto found = connect_failures_.find(device);
    return connect_failures_.end() == found ? QString() : found->second;
}

bool GripperSettingWidget::usb_selected() const {
    return QStringLiteral("USB") == ui->combo_box_type_->currentSourceText();
}

GripperDevice* GripperSettingWidget::current_device() {
    return GripperGlobal::instance().get_device(static_cast<uint32_t>(device_index_));
}

void GripperSettingWidget::on_combo_box_type__activated(const QString&) {
    const QString type = ui->combo_box_type_->currentSourceText();
    if (QStringLiteral("TCP Client") == type) {
        ui->stacked_widget_->setCurrentWidget(ui->widget_tcp_client_);
    } else if (QStringLiteral("USB") == type) {
        ui->stacked_widget_->setCurrentWidget(ui->widget_usb_);
    }
    connection_type_ = type;
    update_ui();
}

void GripperSettingWidget::on_combo_box_node__activated(const QString& text) {
    const int remembered = ui->combo_box_node_->currentIndex();
    if (QStringLiteral("DEL") == text) {
        ui->combo_box_node_->clear();
        for (int label = 1; label <= device_count_index_ + 1; ++label) {
            ui->combo_box_node_->addItem(QString::number(label));
        }
        ui->combo_box_node_->setCurrentIndex(std::min(remembered, device_count_index_));
    } else {
        for (int label = previous_count_index_ + 2; label <= device_count_index_ + 1; ++label) {
            ui->combo_box_node_->addItem(QString::number(label));
        }
    }
    device_index_ = ui->combo_box_node_->currentIndex();
    update_ui();
}

void GripperSettingWidget::on_combo_box_index__activated(const QString&) {
    device_count_index_ = ui->combo_box_index_->currentIndex();
    if (device_count_index_ > previous_count_index_) {
        add_deviceIndex();
    } else if (device_count_index_ < previous_count_index_) {
        del_deviceIndex();
    }
    previous_count_index_ = device_count_index_;
    update_ui();
}

void GripperSettingWidget::add_deviceIndex() {
    on_combo_box_node__activated(QStringLiteral("ADD"));
    for (int added = 0; added < device_count_index_ - previous_count_index_; ++added) {
        GripperGlobal::instance().add_device(GripperGlobal::insert_device());
    }
}

// Removes the records above the new count, the highest first. A removed gripper that is still
// connected is disconnected: nothing could reach it any more.
void GripperSettingWidget::del_deviceIndex() {
    on_combo_box_node__activated(QStringLiteral("DEL"));
    GripperGlobal& registry = GripperGlobal::instance();
    for (int index = previous_count_index_; index > device_count_index_; --index) {
        GripperDevice* device = registry.get_device(static_cast<uint32_t>(index));
        if (nullptr == device) {
            continue;
        }
        registry.remove_device(device);
        disconnect_removed(device);
        retire_if_removed(device);
    }
}

void GripperSettingWidget::disconnect_removed(GripperDevice* device) {
    if (nullptr != device->gripper_abstract_control_ && 0 == busy_devices_.count(device)) {
        start_disconnect(device);
    }
}

void GripperSettingWidget::queue_update_ui() {
    if (!update_queued_.exchange(true)) {
        emit call_queued([this] { update_ui(); });
    }
}

// Before the driver is retired: the page no longer leaves it when it closes.
void GripperSettingWidget::on_gripper_abstract_control_destroy(GripperLogicControl* control) {
    {
        std::lock_guard<std::mutex> lock(jobs_mutex_);
        drivers_.erase(control);
    }
    queue_update_ui();
}

void GripperSettingWidget::on_any_change() {
    queue_update_ui();
}
