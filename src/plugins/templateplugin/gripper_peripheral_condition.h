#ifndef TEMPLATEPLUGIN_GRIPPER_PERIPHERAL_CONDITION_H
#define TEMPLATEPLUGIN_GRIPPER_PERIPHERAL_CONDITION_H

#include <QMap>
#include <QString>

#include "src/plugins/templateplugin/abstract_widget.h"
#include "src/plugins/templateplugin/gripper_condition_info.h"

class AbsCondInfo;
class PluginCommandRunner;
class QLabel;
class QLineEdit;
class QTimer;
class gripper_condition_class;

namespace Ui {
class gripper_peripheral_condition;
}

// The editor of a gripper program step: plug-in, device id, position, force and speed within
// the ranges the plug-in reports, blocking; tries the values on the gripper, saves the step to
// the pendant or removes it. The newest editor is the one instance() returns.
class gripper_peripheral_condition : public AbstractWidget {
    Q_OBJECT

public:
    explicit gripper_peripheral_condition(QWidget* parent = nullptr);
    ~gripper_peripheral_condition() override;

    // The editor alive now, or null.
    static gripper_peripheral_condition* instance();

    // Adds a plug-in with the ranges of its configuration answer.
    void init(const QString& pluginName, const QString& configJson);
    // Shows a record of this plug-in's type; other records are ignored.
    void updateCondForm(AbsCondInfo* absCond);
    bool checkCondInfo(const gripper_condition_class& record, QString& errorInfo);

public slots:
    void on_pbn_confirm_clicked();
    void on_pbn_remove_clicked();
    void on_pbn_controlGripper_clicked();
    void on_cmb_pluginName_activated(int index);
    void slot_setParam();
    void slot_operationObjectRelease();
    void on_pbn_positionSub_pressed();
    void on_pbn_positionAdd_pressed();
    void on_pbn_forceSub_pressed();
    void on_pbn_forceAdd_pressed();
    void on_pbn_speedSub_pressed();
    void on_pbn_speedAdd_pressed();

protected:
    // A new language: the form's texts again.
    void changeEvent(QEvent* event) override;

private slots:
    void slot_controlFinished(bool ok, const QString& answer);

private:
    void setup_fields();
    void ask_plugin_config();
    void start_hold(QLineEdit* field, bool increase);
    void apply_range(QLineEdit* field, QLabel* range_label, const gripper_condition_Range& range);
    void show_ranges(const gripper_condition_Info& info);
    QString condition_json() const;

    Ui::gripper_peripheral_condition* ui;
    int hold_ticks_;
    bool hold_increase_;
    QLineEdit* hold_target_;
    QTimer* hold_timer_;
    QMap<QString, gripper_condition_Info> plugin_config_;
    // The first text of the record last shown, handed on to the record saved.
    QString alias_;
    PluginCommandRunner* control_runner_;
};

#endif
