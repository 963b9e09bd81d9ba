#include "tools/gripper_simulator/announce.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>

namespace gripper_sim {

bool announce(const std::string& file, const std::string& slave_path) {
    // A reader must never see a half-written line, so the text goes to a temporary file first.
    const std::string temporary = file + ".tmp." + std::to_string(::getpid());
    {
        std::ofstream out(temporary, std::ios::trunc);
        out << "PTY is " << slave_path << "\n";
        if (!out.flush()) {
            std::remove(temporary.c_str());
            return false;
        }
    }
    if (std::rename(temporary.c_str(), file.c_str()) != 0) {
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

}  // namespace gripper_sim
