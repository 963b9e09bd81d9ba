#include "tools/gripper_doctor/sysfs.h"

#include <dirent.h>
#include <limits.h>
#include <stdlib.h>

#include <algorithm>
#include <fstream>

namespace gripper_doctor {
namespace sysfs {

std::vector<std::string> list(const std::string& directory) {
    std::vector<std::string> names;
    DIR* handle = ::opendir(directory.c_str());
    if (nullptr == handle) {
        return names;
    }
    for (struct dirent* entry = ::readdir(handle); nullptr != entry; entry = ::readdir(handle)) {
        const std::string name = entry->d_name;
        if ("." != name && ".." != name) {
            names.push_back(name);
        }
    }
    ::closedir(handle);
    std::sort(names.begin(), names.end());
    return names;
}

std::string first_line(const std::string& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    const size_t begin = line.find_first_not_of(" \t\r\n");
    if (std::string::npos == begin) {
        return std::string();
    }
    return line.substr(begin, line.find_last_not_of(" \t\r\n") - begin + 1);
}

std::string canonical(const std::string& path) {
    char resolved[PATH_MAX];
    return nullptr == ::realpath(path.c_str(), resolved) ? std::string() : std::string(resolved);
}

std::string join(const std::string& directory, const std::string& name) {
    if (!directory.empty() && '/' == directory.back()) {
        return directory + name;
    }
    return directory + "/" + name;
}

}  // namespace sysfs
}  // namespace gripper_doctor
