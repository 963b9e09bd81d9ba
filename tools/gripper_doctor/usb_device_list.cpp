#include "tools/gripper_doctor/usb_device_list.h"

#include "tools/gripper_doctor/sysfs.h"

namespace gripper_doctor {

UsbDeviceList::UsbDeviceList(const std::string& sysroot) {
    const std::string root = sysfs::join(sysroot, "sys/bus/usb/devices");
    for (const std::string& name : sysfs::list(root)) {
        const std::string directory = sysfs::join(root, name);
        UsbDevice device;
        device.name = name;
        device.path = sysfs::canonical(directory);
        device.identity.vendor = sysfs::first_line(sysfs::join(directory, "idVendor"));
        device.identity.product = sysfs::first_line(sysfs::join(directory, "idProduct"));
        if (device.path.empty() || device.identity.vendor.empty()) {
            continue;
        }
        device.identity.known_adapter =
            known_adapter(device.identity.vendor, device.identity.product);
        devices_.push_back(device);
    }
}

const UsbDevice* UsbDeviceList::owner_of(const std::string& sysfs_path) const {
    const UsbDevice* owner = nullptr;
    for (const UsbDevice& device : devices_) {
        const std::string prefix = device.path + "/";
        if (0 == sysfs_path.compare(0, prefix.size(), prefix) &&
            (nullptr == owner || device.path.size() > owner->path.size())) {
            owner = &device;
        }
    }
    return owner;
}

bool UsbDeviceList::known_adapter(const std::string& vendor, const std::string& product) {
    return ("0403" == vendor && "6001" == product) || ("0483" == vendor && "5740" == product);
}

}  // namespace gripper_doctor
