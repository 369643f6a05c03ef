#include "garmin/values/ByteAccess.h"

#include <algorithm>

#include "base/CodePage.h"
#include "base/RunTimeError.h"

namespace marlune {
namespace {

void requireRoom(std::size_t size, std::size_t offset, std::size_t count) {
    if (offset > size || count > size - offset) {
        throw RunTimeError(RunTimeError::index);
    }
}

}  // namespace

Bytes bytesAt(Bytes data, std::size_t offset, std::size_t count) {
    requireRoom(data.size(), offset, count);
    return data.subspan(offset, count);
}

std::uint8_t byteAt(Bytes data, std::size_t offset) {
    return bytesAt(data, offset, 1).front();
}

Bytes untilZero(Bytes data, std::size_t offset, std::size_t atMost) {
    const std::size_t begin = std::min(offset, data.size());
    const Bytes field = data.subspan(begin, std::min(atMost, data.size() - begin));
    const auto zero = std::find(field.begin(), field.end(), 0);
    return field.first(static_cast<std::size_t>(zero - field.begin()));
}

std::string trimmedText(Bytes text) {
    const std::string_view characters(reinterpret_cast<const char*>(text.data()), text.size());
    return fromAnsi(trimBlanks(characters));
}

void putBytes(std::span<std::uint8_t> record, std::size_t offset, Bytes bytes) {
    requireRoom(record.size(), offset, bytes.size());
    std::copy(bytes.begin(), bytes.end(), record.begin() + static_cast<std::ptrdiff_t>(offset));
}

void putByte(std::span<std::uint8_t> record, std::size_t offset, std::uint8_t byte) {
    putBytes(record, offset, {&byte, 1});
}

void putText(std::span<std::uint8_t> record, std::size_t offset, std::string_view ansi) {
    putBytes(record, offset, {reinterpret_cast<const std::uint8_t*>(ansi.data()), ansi.size()});
}

}  // namespace marlune
