#include "tools/gripper_doctor/target.h"

#include <arpa/inet.h>

#include <cctype>

namespace gripper_doctor {
namespace {

bool all_digits(const std::string& text) {
    for (char c : text) {
        if (!std::isdigit(static_cast<unsigned char>(c))) {
            return false;
        }
    }
    return !text.empty();
}

bool looks_like_tcp(const std::string& text) {
    return std::string::npos != text.find(':') && '/' != text[0] && '.' != text[0];
}

bool parse_tcp(const std::string& text, Target& target, std::string& error) {
    const size_t colon = text.rfind(':');
    const std::string host = text.substr(0, colon);
    const std::string port = text.substr(colon + 1);
    struct in_addr address;
    if (host.empty() || 1 != inet_pton(AF_INET, host.c_str(), &address)) {
        error = "\"" + text + "\": HOST must be an IPv4 address such as 192.168.1.29 (the " +
                "plug-in connects to addresses, not names)";
        return false;
    }
    if (!all_digits(port)) {
        error = "\"" + text + "\": PORT must be a number, as in 192.168.1.29:8888";
        return false;
    }
    if (port.size() > 5 || std::stol(port) < 1 || std::stol(port) > 65535) {
        error = "\"" + text + "\": port " + port + " is out of range (1-65535)";
        return false;
    }
    target.kind = Target::Kind::tcp;
    target.name = text;
    target.host = host;
    target.port = static_cast<uint16_t>(std::stol(port));
    return true;
}

}  // namespace

Target Target::serial_port(const std::string& path) {
    Target target;
    target.name = path;
    target.path = path;
    return target;
}

bool parse_target(const std::string& text, Target& target, std::string& error) {
    if (text.empty()) {
        error = "an empty target: give a serial device or HOST:PORT";
        return false;
    }
    if (looks_like_tcp(text)) {
        return parse_tcp(text, target, error);
    }
    const bool bare_name = std::string::npos == text.find('/');
    target = Target::serial_port(bare_name ? "/dev/" + text : text);
    return true;
}

}  // namespace gripper_doctor
