// The stable name the scan lists for a serial port: the by-id link that leads to it.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "gripper_main/userinterface_logic/gripper_stable_port_name/gripper_stable_port_name.h"

TEST(GripperStablePortName, ByIdLinkWhereThereIsOneElseThePathItself) {
    QTemporaryDir root;
    QDir(root.path()).mkdir("by-id");
    const QString by_id = root.filePath("by-id");
    for (const char* device : {"ttyUSB1", "ttyUSB2"}) {
        QFile file(root.filePath(device));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    // Relative, as udev makes them; one broken link beside them.
    ASSERT_TRUE(QFile::link("../ttyUSB1", by_id + "/usb-Adapter_A1-if00-port0"));
    ASSERT_TRUE(QFile::link("../gone", by_id + "/usb-Adapter_B2-if00-port0"));
    const struct {
        QString path;
        QString folder;
        QString expected;
    } rows[] = {
        {root.filePath("ttyUSB1"), by_id, by_id + "/usb-Adapter_A1-if00-port0"},
        {root.filePath("ttyUSB2"), by_id, root.filePath("ttyUSB2")},
        {root.filePath("missing"), by_id, root.filePath("missing")},
        {root.filePath("ttyUSB1"), root.filePath("no-such-folder"), root.filePath("ttyUSB1")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.expected.toStdString(),
                  GripperStablePortName::of(row.path, row.folder).toStdString());
    }
}
