#ifndef GRIPPER_COMMON_ENUM_NAME_MAP_H
#define GRIPPER_COMMON_ENUM_NAME_MAP_H

#include <map>
#include <string>

#include "gripper/gripper_common/simple_logger/simple_logger.h"

// Look-ups in the ordered maps from an enumeration's values to its enumerators' names.

// The name of value; an empty text, logged, when the map does not hold it.
template <typename Key>
std::string enum_name_of(const std::map<Key, std::string>& map, Key value) {
    auto iter = map.find(value);
    if (map.end() == iter) {
        GRIPPER_LOG("W", "uncontain this %d", static_cast<int>(value));
        return std::string();
    }
    return iter->second;
}

// The first value, in key order, whose name equals text exactly; value 0, logged, when none does.
template <typename Key>
Key enum_value_of(const std::map<Key, std::string>& map, const std::string& text) {
    for (const auto& entry : map) {
        if (entry.second == text) {
            return entry.first;
        }
    }
    GRIPPER_LOG("W", "uncontain this %s", text.c_str());
    return static_cast<Key>(0);
}

#endif
