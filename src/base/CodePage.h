// Windows-1252, the code page of receivers, upload files and the trace file, to and from the UTF-8
// of every text inside the control.
//
// The five bytes that the code page leaves undefined stand for the C1 control of the same code, so
// any bytes survive the way there and back. Whatever is cut, padded, trimmed or counted is handled
// in the single-byte form, where an É is one character.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {

// Single-byte text to UTF-8; cannot fail.
std::string fromAnsi(std::string_view ansi);
std::string fromAnsi(std::span<const std::uint8_t> ansi);

// UTF-8 to single-byte text; a character that the code page lacks, or a byte that is not UTF-8,
// becomes "?".
std::string toAnsi(std::string_view utf8);
std::vector<std::uint8_t> toAnsiBytes(std::string_view utf8);

// Whether the bytes are well-formed UTF-8 (no overlong forms, no surrogates).
bool isUtf8(std::string_view bytes);

// Without the blanks (code 32 only) at both ends.
std::string_view trimBlanks(std::string_view text);

}  // namespace marlune
