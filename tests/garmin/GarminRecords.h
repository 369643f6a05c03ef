// Records written by hand for the dialogues: the simplest type of each kind.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "support/Dialogue.h"

namespace marlune {

// 45 degrees in semicircles, little-endian; decodes to 45.
inline const Bytes k45 = {0, 0, 0, 0x20};

inline Bytes padded(const std::string& text, std::size_t size) {
    Bytes bytes(text.begin(), text.end());
    bytes.resize(size, ' ');
    return bytes;
}

inline Bytes join(std::initializer_list<Bytes> pieces) {
    Bytes all;
    for (const Bytes& piece : pieces) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

// A D100 waypoint at 45 N, 45 E.
inline Bytes d100(const std::string& ident) {
    return join({padded(ident, 6), k45, k45, Bytes(4, 0), padded(std::string("NOTE") + '\0', 40)});
}
inline std::string d100Line(const std::string& ident) {
    return "W;" + ident + ";45;45;NOTE;0;18;0";
}

// A D300 track point at 45 N, 45 E, 01/01/1990 12:00:00.
inline Bytes d300(bool newSegment) {
    return join({k45, k45, {0x40, 0xFA, 1, 0}, {static_cast<std::uint8_t>(newSegment ? 1 : 0)}});
}
inline const std::string kD300Line = "T;45;45;32874.5;0;";

// What the receiver sends for a point without position.
inline Bytes d300WithoutPosition() {
    return join({{0xFF, 0xFF, 0xFF, 0x7F}, {0xFF, 0xFF, 0xFF, 0x7F}, Bytes(5, 0)});
}

inline Bytes text0(const std::string& text) {
    Bytes bytes(text.begin(), text.end());
    bytes.push_back(0);
    return bytes;
}

// The lines that a dialogue is played over, for parameterised suites.
inline const auto kEveryLine = testing::Values(Line::serial, Line::usbInterrupt, Line::usbBulk);
// For uploads, which read no pipe.
inline const auto kSerialAndUsb = testing::Values(Line::serial, Line::usbInterrupt);
inline std::string lineName(const testing::TestParamInfo<Line>& line) {
    static const std::map<Line, std::string> kNames = {
        {Line::serial, "Serial"}, {Line::usbInterrupt, "UsbInterrupt"}, {Line::usbBulk, "UsbBulk"}};
    return kNames.at(line.param);
}

inline Step acks(std::uint8_t pid) {
    return sends(6, {pid, 0});
}
inline Step protocolError(int pid) {
    return box(BoxIcon::critical, "Erreur de protocole - pid = " + std::to_string(pid));
}

}  // namespace marlune
