#ifndef GRIPPER_CONTROL_WIDGET_H
#define GRIPPER_CONTROL_WIDGET_H

#include <QWidget>

#include <atomic>
#include <functional>
#include <set>

#include "gripper_main/userinterface_logic/gripper_observer_adapter/gripper_observer_adapter.h"

class QTimer;

namespace Ui {
class GripperControlWidget;
}

// The "Control" tab: drives the selected gripper by hand (position, force and speed, each with a
// minimum, a decrease, a field, an increase and a maximum button) and shows its state. It keeps
// no gripper state: every redraw reads the registry and the driver's last finished values,
// without waiting on an exchange. Commands run on the command worker.
//
// Press and hold a decrease or increase button: after 500 ms the field steps every 25 ms, within
// the driver's limits, and the shown value is sent on release; a shorter click steps the
// gripper's current value once.
class GripperControlWidget : public QWidget, private GripperObserverAdapter {
    Q_OBJECT

public:
    static const int PRESS_DELAY_MS = 500;
    static const int REPEAT_INTERVAL_MS = 25;

    explicit GripperControlWidget(QWidget* parent = nullptr);
    ~GripperControlWidget() override;

public slots:
    void update_ui();
    void on_timeout();
    void on_combo_box_node_2_activated();
    bool eventFilter(QObject* watched, QEvent* event) override;

    void on_push_button_position_min__clicked();
    void on_push_button_position_max__clicked();
    void on_push_button_position_decrease__pressed();
    void on_push_button_position_increase__pressed();
    void on_push_button_position_decrease__released();
    void on_push_button_position_increase__released();
    // The step buttons act on press and release; their clicked slots, like the force field's
    // cursor slot below, belong to the page's interface and do nothing.
    void on_push_button_position_decrease__clicked() {}
    void on_push_button_position_increase__clicked() {}

    void on_push_button_force_min__clicked();
    void on_push_button_force_max__clicked();
    void on_push_button_force_decrease__pressed();
    void on_push_button_force_increase__pressed();
    void on_push_button_force_decrease__released();
    void on_push_button_force_increase__released();
    void on_push_button_force_decrease__clicked() {}
    void on_push_button_force_increase__clicked() {}

    void on_push_button_speed_min__clicked();
    void on_push_button_speed_max__clicked();
    void on_push_button_speed_decrease__pressed();
    void on_push_button_speed_increase__pressed();
    void on_push_button_speed_decrease__released();
    void on_push_button_speed_increase__released();
    void on_push_button_speed_decrease__clicked() {}
    void on_push_button_speed_increase__clicked() {}

    void on_line_edit_force__cursorPositionChanged(int, int) {}

signals:
    // Notifications from other threads, carried to the interface thread; connected in the
    // constructor.
    void update_requested();
    void program_state_requested(int state);

protected:
    // A new language: the form's texts and the status again.
    void changeEvent(QEvent* event) override;

private slots:
    void apply_program_state(int state);

private:
    // The held button, as pressed_button_ holds it.
    enum PressedButton {
        PB_NONE = 0,
        PB_POSITION_DECREASE = 1,
        PB_POSITION_INCREASE = 2,
        PB_FORCE_DECREASE = 3,
        PB_FORCE_INCREASE = 4,
        PB_SPEED_DECREASE = 7,
        PB_SPEED_INCREASE = 8,
    };
    typedef std::function<bool(GripperLogicControl*)> Command;

    void on_program_state_changed(GripperGlobal::ProgramState state) override;
    void on_any_change() override;

    void setup_form();
    void queue_update_ui();
    void forget_unlisted_drivers();
    void refresh_node_list();
    GripperLogicControl* current_driver();
    void show_values(GripperLogicControl* driver);
    void show_controls(bool enabled, bool detected);
    QList<QWidget*> group_widgets() const;

    void press(PressedButton button);
    void release(PressedButton button);
    void step_field();
    void send_field(PressedButton button, GripperLogicControl* driver);
    void send_step(PressedButton button, GripperLogicControl* driver);
    void send_position(GripperLogicControl* driver, float position, bool down);
    void send_limit(int quantity, const char* failure, const Command& command);
    void send(GripperLogicControl* driver, int quantity, const char* failure,
              const Command& command);

    Ui::GripperControlWidget* ui;
    int pressed_button_;
    QTimer* press_timer_;
    QTimer* repeat_timer_;
    bool refresh_node_list_;
    int device_index_;

    std::atomic<bool> update_queued_;
    // The shown form of the clamp and loosen images: true for the enabled ("_OFF") one.
    bool controls_shown_enabled_;
    // Drivers this page observes; it leaves them on destruction.
    std::set<GripperLogicControl*> observed_drivers_;
};

#endif
