// What "--port" names: a COM number, a device path, a built-in virtual receiver, or the port of the
// only receiver that answers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace marlune::cli {

struct PortChoice {
    enum class Kind { none, number, device, builtIn, automatic };

    Kind kind = Kind::none;
    std::int16_t number = 0;
    std::string text;  // the device's path, or the virtual unit's name (may be empty)

    // "3", "/dev/ttyUSB0", "virtual", "virtual:UNIT", "auto". Throws std::invalid_argument, with a
    // text for the user, for what is none of these.
    static PortChoice parse(std::string_view text);
};

// "N=PATH": what a COM number means.
struct PortDevice {
    int number = 0;
    std::string path;

    // Throws std::invalid_argument, with a text for the user.
    static PortDevice parse(std::string_view text);
};

}  // namespace marlune::cli
