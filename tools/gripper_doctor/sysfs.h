#ifndef TOOLS_GRIPPER_DOCTOR_SYSFS_H
#define TOOLS_GRIPPER_DOCTOR_SYSFS_H

#include <string>
#include <vector>

namespace gripper_doctor {

// Small file-system helpers for reading sysfs and /proc.
namespace sysfs {

// The names in a directory, sorted, without "." and ".."; empty when it cannot be read.
std::vector<std::string> list(const std::string& directory);
// The first line of a file without surrounding blanks; empty when it cannot be read.
std::string first_line(const std::string& file);
// The path with every link resolved; empty when it does not exist.
std::string canonical(const std::string& path);
// "a/b" from "a" and "b", with one slash between them.
std::string join(const std::string& directory, const std::string& name);

}  // namespace sysfs
}  // namespace gripper_doctor

#endif
