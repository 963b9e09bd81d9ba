#ifndef GRIPPER_SETTING_WIDGET_H
#define GRIPPER_SETTING_WIDGET_H

#include <QMetaType>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "gripper_main/userinterface_logic/gripper_observer_adapter/gripper_observer_adapter.h"

class GripperLinkOptions;

namespace Ui {
class GripperSettingWidget;
}

// The "Setting" tab: how many grippers are in use, which one is configured, its link (TCP client
// or USB serial) and parameters; scan, connect, activate and disconnect. It holds no gripper
// state: every redraw reads the registry and the drivers.
//
// Gripper operations (connect, activate, disconnect) run on the command worker, so the interface
// thread never waits on an exchange; their results are stored back on the interface thread.
// While an operation for a device is under way, its buttons are disabled and the status reads
// "Connecting" or "Disconnecting".
//
// One instance per process: instance() makes it on the interface thread the first time. Script
// commands call scan_gripper, connect_gripper, connect_gripper_debug and disconnect_gripper from
// their own thread; connect and disconnect return once the attempt has finished. Called on the
// interface thread itself, they run the slots directly and wait in place.
class GripperSettingWidget : public QWidget, private GripperObserverAdapter {
    Q_OBJECT

public:
    // The page, made with no parent on the first call. Off the interface thread, before the page
    // exists, it cannot be made: the call logs and returns null.
    static GripperSettingWidget* instance();
    ~GripperSettingWidget() override;

    bool scan_gripper();
    bool connect_gripper(GripperCommunication::CommunicationConnection connection,
                         const std::vector<std::string>& list_parameters);
    bool connect_gripper_debug();
    bool disconnect_gripper();
    // Selects entry index (0-based) of the page's gripper list and disconnects that gripper;
    // false for an index outside the list or a gripper that is not connected.
    bool disconnect_gripper(int index);

signals:
    // A device's driver was stored or cleared (the registry itself does not tell).
    void devices_changed();
    // The page's own calls from other threads to the interface thread, connected in the
    // constructor: the first is queued, the second waits until the call has run.
    void call_queued(const std::function<void()>& call);
    void call_blocking(const std::function<void()>& call);

public slots:
    void update_ui();
    void on_push_button_scan__clicked();
    void on_push_button_connect__clicked();
    void on_push_button_activate__clicked();
    void on_push_button_disconnect__clicked();
    void on_combo_box_type__activated(const QString& text);
    void on_combo_box_node__activated(const QString& text);
    void on_combo_box_index__activated(const QString& text);

protected:
    // A new language: the form's texts and the status again.
    void changeEvent(QEvent* event) override;

private:
    enum ScriptPreparation { SP_FAILED, SP_CONNECTED, SP_PROCEED };

    // The operations under way, shared with the script commands waiting for them, so that a
    // waiting command outlives the page: the page's destructor closes it and wakes them.
    struct Jobs {
        std::mutex mutex;
        std::condition_variable done;
        int pending = 0;
        bool closing = false;
    };

    explicit GripperSettingWidget(QWidget* parent = nullptr);

    void on_any_change() override;
    void on_gripper_abstract_control_destroy(GripperLogicControl* control) override;

    void setup_form();
    void queue_update_ui();
    void add_deviceIndex();
    void del_deviceIndex();
    GripperDevice* current_device();
    void apply_fonts();
    void apply_fields();
    void apply_enabled(GripperDevice* device);
    void apply_status(GripperDevice* device);
    bool usb_selected() const;
    QString failure_sentence(GripperDevice* device) const;

    bool take_tcp_parameters(GripperDevice* device);
    void take_usb_parameters(GripperDevice* device);
    bool read_pts_file();
    void list_system_ports();
    void walk_usb_devices();

    void start_connect(GripperDevice* device,
                       GripperCommunication::CommunicationConnection connection);
    void start_disconnect(GripperDevice* device);
    void disconnect_removed(GripperDevice* device);
    void run_job(const std::function<std::function<void()>()>& work);
    void job_started(GripperDevice* device);
    void job_finished(GripperDevice* device);
    void retire_if_removed(GripperDevice* device);
    void note_driver(GripperLogicControl* driver);
    void link_options_changed(int index);
    void connect_finished(GripperDevice* device, GripperLogicControl* driver,
                          const QString& failure);
    void disconnect_finished(GripperDevice* device, GripperLogicControl* driver, bool destroyed);

    int prepare_script_connect(int connection, const QStringList& parameters);
    int prepare_debug_connect();
    bool select_device(int index);
    bool current_device_connected();
    bool on_interface_thread() const;
    void run_on_interface_thread(const std::function<void()>& call, bool wait);
    bool connect_through_slots();
    bool disconnect_through_slots();
    static bool wait_for_jobs(Jobs& jobs);

    Ui::GripperSettingWidget* ui;
    GripperLinkOptions* link_options_;
    QString connection_type_;
    QString ip_;
    QString port_;
    QString serialport_;
    QString pts_port_;
    int device_index_;
    int device_count_index_;
    int previous_count_index_;

    // Set when the fields above were given by a script: the next redraw shows them.
    bool fields_changed_;
    // Devices with an operation under way (interface thread only).
    std::set<GripperDevice*> busy_devices_;
    // Why the last connect of a device failed, until one succeeds (interface thread only).
    std::map<GripperDevice*, QString> connect_failures_;
    // Set while a script call on the interface thread runs its operations in place.
    bool run_jobs_in_place_;
    std::atomic<bool> update_queued_;

    const std::shared_ptr<Jobs> jobs_;
    std::mutex jobs_mutex_;
    // Every live driver connected for this page, whose observer it is (guarded by jobs_mutex_).
    std::set<GripperLogicControl*> drivers_;
};

Q_DECLARE_METATYPE(std::function<void()>)

#endif
