#include "base/CodePage.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace marlune {
namespace {

// Bytes 0x80 to 0x9F of Windows-1252; the five undefined ones keep their own code.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void appendUtf8(std::string& out, char32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

char32_t fromByte(std::uint8_t byte) {
    const bool inTable = byte >= 0x80 && byte < 0xA0;
    return inTable ? kUpperControls[byte - 0x80U] : byte;
}

std::optional<char> toByte(char32_t code) {
    if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
        return static_cast<char>(code);
    }
    for (std::size_t i = 0; i < kUpperControls.size(); ++i) {
        if (kUpperControls[i] == code) {
            return static_cast<char>(0x80 + i);
        }
    }
    return std::nullopt;
}

// Whether all characters are below 128; eight are looked at together.
bool isPlain(std::string_view text) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080;
    std::uint64_t eight = 0;
    for (; text.size() >= sizeof eight; text.remove_prefix(sizeof eight)) {
        std::memcpy(&eight, text.data(), sizeof eight);
        if ((eight & kHighBits) != 0) {
            return false;
        }
    }
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

struct Decoded {
    char32_t code;
    std::size_t length;  // 0: the bytes are not UTF-8
};

// Reads the character that starts at `at`.
Decoded decodeUtf8(std::string_view text, std::size_t at) {
    const auto byteAt = [&](std::size_t i) -> char32_t {
        return static_cast<std::uint8_t>(text[i]);
    };
    const char32_t lead = byteAt(at);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4U : lead >= 0xE0 ? 3U : 2U;
    if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) {
        return {0, 0};
    }
    char32_t code = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const char32_t next = byteAt(at + i);
        if ((next & 0xC0U) != 0x80U) {
            return {0, 0};
        }
        code = (code << 6U) | (next & 0x3FU);
    }
    constexpr std::array<char32_t, 5> kLowest = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < kLowest[length] || code > 0x10FFFF || surrogate) {
        return {0, 0};
    }
    return {code, length};
}

}  // namespace

std::string fromAnsi(std::string_view ansi) {
    // Most texts are plain: they stay as they are.
    if (isPlain(ansi)) {
        return std::string(ansi);
    }
    std::string out;
    out.reserve(ansi.size());
    for (const char c : ansi) {
        appendUtf8(out, fromByte(static_cast<std::uint8_t>(c)));
    }
    return out;
}

std::string fromAnsi(std::span<const std::uint8_t> ansi) {
    return fromAnsi(std::string_view(reinterpret_cast<const char*>(ansi.data()), ansi.size()));
}

std::string toAnsi(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const auto [code, length] = decodeUtf8(utf8, at);
        out += length == 0 ? '?' : toByte(code).value_or('?');
        at += length == 0 ? 1 : length;
    }
    return out;
}

std::vector<std::uint8_t> toAnsiBytes(std::string_view utf8) {
    const std::string ansi = toAnsi(utf8);
    return {ansi.begin(), ansi.end()};
}

bool isUtf8(std::string_view bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t length = decodeUtf8(bytes, at).length;
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

std::string_view trimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace marlune
