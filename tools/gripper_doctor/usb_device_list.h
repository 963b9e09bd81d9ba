#ifndef TOOLS_GRIPPER_DOCTOR_USB_DEVICE_LIST_H
#define TOOLS_GRIPPER_DOCTOR_USB_DEVICE_LIST_H

#include <string>
#include <vector>

#include "tools/gripper_doctor/target.h"

namespace gripper_doctor {

// One USB device of "/sys/bus/usb/devices/".
struct UsbDevice {
    std::string name;  // "1-1.2"
    std::string path;  // its sysfs directory, links resolved
    UsbIdentity identity;
};

// The USB devices sysfs lists, with the adapters grippers are sold with marked.
class UsbDeviceList {
public:
    explicit UsbDeviceList(const std::string& sysroot);

    const std::vector<UsbDevice>& devices() const { return devices_; }
    // The device a sysfs path lies below (the deepest one), or null.
    const UsbDevice* owner_of(const std::string& sysfs_path) const;

    // 0403:6001 and 0483:5740, the ids the plug-in's scan knows.
    static bool known_adapter(const std::string& vendor, const std::string& product);

private:
    std::vector<UsbDevice> devices_;
};

}  // namespace gripper_doctor

#endif
