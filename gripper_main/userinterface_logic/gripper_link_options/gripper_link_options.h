#ifndef GRIPPER_LINK_OPTIONS_H
#define GRIPPER_LINK_OPTIONS_H

#include <QWidget>

class GripperLogicControl;
class QCheckBox;
class QComboBox;
class QEvent;
class QLabel;

// The per-gripper link options of the Setting page: "Reconnect automatically" and the update
// period while a move is pending (100 ms as specified, 50 or 20 ms). Both are off / 100 ms by
// default and kept, per device index, in the plug-in's settings store, so they survive a restart
// of the pendant. The page shows the options of its current device and applies them to each
// driver it connects.
class GripperLinkOptions : public QWidget {
    Q_OBJECT

public:
    explicit GripperLinkOptions(QWidget* parent = nullptr);

    // Shows the stored options of the device at index, unless shown already; the operator's
    // changes are for it.
    void show_device(int index);
    // Gives driver the stored options of the device at index. Any thread.
    static void apply(int index, GripperLogicControl* driver);

signals:
    // The operator changed the options of the device at index; they are stored already.
    void changed(int index);

protected:
    // Shows the texts again in a new language.
    void changeEvent(QEvent* event) override;

private:
    void on_reconnect_toggled(bool checked);
    void on_period_activated(int row);
    void retranslate();

    QCheckBox* check_box_reconnect_;
    QLabel* label_move_period_;
    QComboBox* combo_box_move_period_;
    int index_;
};

#endif
