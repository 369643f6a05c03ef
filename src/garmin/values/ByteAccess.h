// Checked access to the bytes of a record. Whatever would read or write outside raises the index
// error, so a codec needs no checks of its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace marlune {

using Bytes = std::span<const std::uint8_t>;

// The count bytes from offset.
Bytes bytesAt(Bytes data, std::size_t offset, std::size_t count);
std::uint8_t byteAt(Bytes data, std::size_t offset);

// The bytes from offset up to, not including, the first zero byte, at most so many. The record's
// end counts as a zero byte, and an offset beyond it gives none.
Bytes untilZero(Bytes data, std::size_t offset, std::size_t atMost);

// Windows-1252 bytes as a text without blanks at its ends.
std::string trimmedText(Bytes text);

// Copies bytes into the record from offset on.
void putBytes(std::span<std::uint8_t> record, std::size_t offset, Bytes bytes);
void putByte(std::span<std::uint8_t> record, std::size_t offset, std::uint8_t byte);
// The text is in Windows-1252 already.
void putText(std::span<std::uint8_t> record, std::size_t offset, std::string_view ansi);

}  // namespace marlune
