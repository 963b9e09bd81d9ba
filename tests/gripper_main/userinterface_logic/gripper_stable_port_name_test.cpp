// The stable name the scan lists for a serial port: the by-id link that leads to it.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "gripper_main/userinterface_logic/gripper_stable_port_name/gripper_stable_port_name.h"

TEST(GripperStablePortName, ByIdLinkWhereThereIsOneElseThePathItself) {
    QTemporaryDir root;
    const QString by_id = root.filePath("by-id"), usb1 = root.filePath("ttyUSB1"),
                  usb2 = root.filePath("ttyUSB2"), missing = root.filePath("missing");
    ASSERT_TRUE(QDir(root.path()).mkdir("by-id") && QFile(usb1).open(QIODevice::WriteOnly) &&
                QFile(usb2).open(QIODevice::WriteOnly));
    // Relative, as udev makes them; one broken link beside them.
    ASSERT_TRUE(QFile::link("../ttyUSB1", by_id + "/usb-Adapter_A1-if00-port0") &&
                QFile::link("../gone", by_id + "/usb-Adapter_B2-if00-port0"));
    const QString rows[][3] = {{usb1, by_id, by_id + "/usb-Adapter_A1-if00-port0"},
                               {usb2, by_id, usb2},
                               {missing, by_id, missing},
                               {usb1, root.filePath("no-such-folder"), usb1}};
    for (const auto& row : rows) {
        EXPECT_EQ(row[2].toStdString(), GripperStablePortName::of(row[0], row[1]).toStdString());
    }
}
