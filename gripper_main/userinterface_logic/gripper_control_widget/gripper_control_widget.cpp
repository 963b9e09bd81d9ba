#include "gripper_main/userinterface_logic/gripper_control_widget/gripper_control_widget.h"

#include <QEvent>
#include <QIcon>
#include <QPixmap>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <iterator>

#include "gripper/gripper_common/object_keeper/object_keeper.h"
#include "gripper/gripper_common/simple_logger/simple_logger.h"
#include "gripper_main/userinterface_logic/gripper_command_worker/gripper_command_worker.h"
#include "gripper_main/userinterface_logic/gripper_status_text/gripper_status_text.h"
#include "src/plugins/templateplugin/common/common.h"
#include "ui_gripper_control_widget.h"

namespace {

// A field is not rewritten while the operator edits it or holds its button.
void show_text(QLineEdit* field, const QString& text, bool held) {
    if (!held && !field->hasFocus() && field->text() != text) {
        field->setText(text);
    }
}

QIcon image(const char* name) {
    return QIcon(QPixmap(QStringLiteral(":/Image/Image/") + QLatin1String(name)));
}

}  // namespace

GripperControlWidget::GripperControlWidget(QWidget* parent)
    : QWidget(parent),
      ui(new Ui::GripperControlWidget),
      pressed_button_(PB_NONE),
      press_timer_(new QTimer(this)),
      repeat_timer_(new QTimer(this)),
      refresh_node_list_(true),
      device_index_(0),
      update_queued_(false),
      controls_shown_enabled_(false) {
    Q_INIT_RESOURCE(gripper_images);
    setup_form();
    press_timer_->setSingleShot(true);
    press_timer_->setInterval(PRESS_DELAY_MS);
    repeat_timer_->setInterval(REPEAT_INTERVAL_MS);
    connect(press_timer_, SIGNAL(timeout()), this, SLOT(on_timeout()));
    connect(repeat_timer_, SIGNAL(timeout()), this, SLOT(on_timeout()));
    connect(this, &GripperControlWidget::update_requested, this, &GripperControlWidget::update_ui,
            Qt::QueuedConnection);
    connect(this, &GripperControlWidget::program_state_requested, this,
            &GripperControlWidget::apply_program_state, Qt::QueuedConnection);
    GripperConnectionManager::instance().add_notify_interface(this);
    GripperGlobal::instance().add_notify_interface(this);
    ui->combo_box_node_2->addItem(QStringLiteral("1"));
    device_index_ = 0;
    refresh_node_list_ = true;
    apply_program_state(GripperGlobal::instance().get_program_state());
    update_ui();
}

GripperControlWidget::~GripperControlWidget() {
    GripperCommandWorker::moves().release(this);
    GripperConnectionManager::instance().remove_notify_interface(this);
    GripperGlobal::instance().remove_notify_interface(this);
    forget_unlisted_drivers();
    for (GripperLogicControl* driver : observed_drivers_) {
        driver->remove_notify_interface(this);
    }
    delete ui;
}

void GripperControlWidget::setup_form() {
    ui->setupUi(this);
    const Common* common = Common::getCommonHandle();
    ui->label_logo_->setPixmap(
        QPixmap(QStringLiteral(":/Image/Image/logo_EN.png"))
            .scaled(common->getRatioSize(220, 56), Qt::KeepAspectRatio, Qt::SmoothTransformation));
    ui->push_button_position_min_->setIconSize(common->getRatioSize(87, 63));
    ui->push_button_position_max_->setIconSize(common->getRatioSize(87, 63));
    ui->push_button_position_min_->setIcon(image("B_Clamp_ON.png"));
    ui->push_button_position_max_->setIcon(image("B_Loosen_ON.png"));
    ui->radio_button_object_detected_->installEventFilter(this);
    ui->radio_button_object_detected_->setFocusPolicy(Qt::NoFocus);
    ui->radio_button_object_detected_->setAutoExclusive(false);
    ui->radio_button_object_detected_->setChecked(false);
}

void GripperControlWidget::changeEvent(QEvent* event) {
    if (QEvent::LanguageChange == event->type()) {
        ui->retranslateUi(this);
        update_ui();
    }
    QWidget::changeEvent(event);
}

void GripperControlWidget::update_ui() {
    const ObjectKeeper::Section section;
    update_queued_ = false;
    forget_unlisted_drivers();
    QFont font = ui->label_status_->font();
    if (16 != font.pointSize()) {
        font.setPointSize(16);
        ui->label_status_->setFont(font);
    }
    if (refresh_node_list_) {
        refresh_node_list_ = false;
        on_combo_box_node_2_activated();
        refresh_node_list_ = true;
        return;
    }
    GripperLogicControl* driver = current_driver();
    if (nullptr == driver) {
        show_controls(false, false);
        GripperStatusText::show(ui->label_status_, GripperStatusText::of(nullptr),
                                GripperStatusText::tone(nullptr));
        return;
    }
    if (observed_drivers_.insert(driver).second) {
        driver->add_notify_interface(this);
    }
    show_values(driver);
    show_controls(driver->takes_commands(),
                  GripperLogicControl::GS_DETECTED == driver->get_gripper_status());
    GripperStatusText::show(ui->label_status_, GripperStatusText::of(driver),
                            GripperStatusText::tone(driver));
}

// A driver no record holds may be retired and freed (the Setting page retires it on this thread
// right after clearing its record), and a new driver may come at its address: forgotten here
// without being touched. It observes nothing any more: its loop ended when it was destroyed.
// A redraw runs between the retirement and the new driver's record, at the latest when the
// manager reports the new driver's creation.
void GripperControlWidget::forget_unlisted_drivers() {
    std::set<GripperLogicControl*> listed;
    for (GripperDevice* device : GripperGlobal::instance().vector_device()) {
        listed.insert(device->gripper_abstract_control_);
    }
    for (auto driver = observed_drivers_.begin(); driver != observed_drivers_.end();) {
        driver = 0 == listed.count(*driver) ? observed_drivers_.erase(driver) : std::next(driver);
    }
}

// The driver of the selected record; null (after a log line) when there is no such record.
GripperLogicControl* GripperControlWidget::current_driver() {
    GripperDevice* device =
        GripperGlobal::instance().get_device(static_cast<uint32_t>(device_index_));
    if (nullptr == device) {
        GRIPPER_LOG("W", "NULL == device");
        return nullptr;
    }
    return device->gripper_abstract_control_;
}

void GripperControlWidget::show_values(GripperLogicControl* driver) {
    show_text(ui->line_edit_position_,
              QString::number(static_cast<double>(driver->cached_position()), 'f', 1),
              PB_POSITION_DECREASE == pressed_button_ || PB_POSITION_INCREASE == pressed_button_);
    show_text(ui->line_edit_force_, QString::number(driver->cached_force()),
              PB_FORCE_DECREASE == pressed_button_ || PB_FORCE_INCREASE == pressed_button_);
    show_text(ui->line_edit_speed_, QString::number(driver->cached_speed()),
              PB_SPEED_DECREASE == pressed_button_ || PB_SPEED_INCREASE == pressed_button_);
}

// Sets the final state at once: disabling a held button on the way would release it.
void GripperControlWidget::show_controls(bool enabled, bool detected) {
    for (QWidget* widget : group_widgets()) {
        widget->setEnabled(enabled);
    }
    ui->radio_button_object_detected_->setEnabled(enabled);
    ui->radio_button_object_detected_->setChecked(detected);
    if (controls_shown_enabled_ == enabled) {
        return;
    }
    controls_shown_enabled_ = enabled;
    ui->push_button_position_min_->setIcon(image(enabled ? "B_Clamp_OFF.png" : "B_Clamp_ON.png"));
    ui->push_button_position_max_->setIcon(image(enabled ? "B_Loosen_OFF.png" : "B_Loosen_ON.png"));
}

QList<QWidget*> GripperControlWidget::group_widgets() const {
    return QList<QWidget*>() << ui->push_button_position_min_ << ui->push_button_position_decrease_
                             << ui->line_edit_position_ << ui->push_button_position_increase_
                             << ui->push_button_position_max_ << ui->push_button_force_min_
                             << ui->push_button_force_decrease_ << ui->line_edit_force_
                             << ui->push_button_force_increase_ << ui->push_button_force_max_
                             << ui->push_button_speed_min_ << ui->push_button_speed_decrease_
                             << ui->line_edit_speed_ << ui->push_button_speed_increase_
                             << ui->push_button_speed_max_;
}

void GripperControlWidget::on_combo_box_node_2_activated() {
    refresh_node_list();
    update_ui();
}

// One entry per registry record; the selection stays where it was, or on the last entry.
void GripperControlWidget::refresh_node_list() {
    const int remembered = ui->combo_box_node_2->currentIndex();
    const int count = static_cast<int>(GripperGlobal::instance().vector_device().size());
    if (ui->combo_box_node_2->count() != count) {
        ui->combo_box_node_2->clear();
        for (int label = 1; label <= count; ++label) {
            ui->combo_box_node_2->addItem(QString::number(label));
        }
    }
    ui->combo_box_node_2->setCurrentIndex(std::min(remembered, count - 1));
    device_index_ = ui->combo_box_node_2->currentIndex();
}

// The "Object detected" indicator shows a state: mouse and hover events never reach it.
bool GripperControlWidget::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ui->radio_button_object_detected_) {
        switch (event->type()) {
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
            case QEvent::HoverEnter:
            case QEvent::HoverLeave:
            case QEvent::HoverMove:
                return true;
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

// Disables the whole page while a robot program runs.
void GripperControlWidget::apply_program_state(int state) {
    setEnabled(GripperGlobal::PS_STOPPED == state);
}

void GripperControlWidget::on_program_state_changed(GripperGlobal::ProgramState state) {
    if (QThread::currentThread() == thread()) {
        apply_program_state(state);
        return;
    }
    emit program_state_requested(static_cast<int>(state));
}

void GripperControlWidget::queue_update_ui() {
    if (!update_queued_.exchange(true)) {
        emit update_requested();
    }
}

// The program state, handled above, leaves the rest of the page as it is.
void GripperControlWidget::on_any_change() {
    queue_update_ui();
}
