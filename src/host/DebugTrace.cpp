#include "host/DebugTrace.h"

#include <algorithm>
#include <charconv>

#include "base/CodePage.h"
#include "base/FilePath.h"

namespace marlune {

std::atomic<std::int32_t> DebugTrace::counter_ = 0;

DebugTrace::DebugTrace(const std::string& folder) : path_(folder + "/Palimor/OcxDebug.txt") {}

void DebugTrace::openEmpty() {
    close();
    file_.open(filePath(path_), std::ios::binary | std::ios::trunc);
}

void DebugTrace::openAppend() {
    close();
    file_.open(filePath(path_), std::ios::binary | std::ios::app);
}

void DebugTrace::close() {
    file_.close();
    file_.clear();
}

void DebugTrace::traceLine(std::string_view text) {
    const std::int32_t number = ++counter_;
    if (writes()) {
        file_ << std::to_string(number) << ':' << toAnsi(text) << "\r\n" << std::flush;
    }
}

namespace {

// Digits are collected by hand: these dumps are made for every frame of a traced transfer.
std::string dump(std::span<const std::uint8_t> bytes, int base) {
    std::string out;
    out.reserve(bytes.size() * 4);
    for (const std::uint8_t byte : bytes) {
        char digits[4];
        const auto end = std::to_chars(digits, digits + sizeof digits, byte, base).ptr;
        out += ' ';
        out.append(digits, end);
    }
    return out;
}

}  // namespace

std::string decimalDump(std::span<const std::uint8_t> bytes) {
    return dump(bytes, 10);
}

std::string hexDump(std::span<const std::uint8_t> bytes, std::int32_t n) {
    const auto count = std::clamp<std::int64_t>(n, 0, static_cast<std::int64_t>(bytes.size()));
    std::string out = dump(bytes.first(static_cast<std::size_t>(count)), 16);
    std::transform(out.begin(), out.end(), out.begin(),
                   [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c - 32) : c; });
    return out;
}

}  // namespace marlune
