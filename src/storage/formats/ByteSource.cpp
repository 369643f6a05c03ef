#include "storage/formats/ByteSource.h"

#include <algorithm>
#include <array>
#include <system_error>

#include "base/FilePath.h"
#include "base/SystemError.h"
#include "storage/formats/GpxValues.h"

namespace marlune {
namespace {

// So much of a line stands in an error: a file may be one line.
constexpr std::size_t kLongestSource = 200;

// A text cut at a character's end.
std::string_view cut(std::string_view line) {
    std::size_t length = std::min(line.size(), kLongestSource);
    while (length < line.size() && (static_cast<unsigned char>(line[length]) & 0xC0U) == 0x80U) {
        ++length;
    }
    return line.substr(0, length);
}

}  // namespace

ByteSource ByteSource::ofFile(const std::string& path) {
    auto file = std::make_unique<std::ifstream>(filePath(path), std::ios::binary);
    if (!*file) {
        throw std::system_error(lastSystemError(), std::system_category(), path);
    }
    return {std::move(file), path};
}

ByteSource ByteSource::ofText(std::string_view text) {
    return {std::make_unique<std::istringstream>(std::string(text)), {}};
}

std::string_view ByteSource::read(std::span<char> room) {
    in_->read(room.data(), static_cast<std::streamsize>(room.size()));
    if (!*in_ && !in_->eof()) {
        throw std::system_error(lastSystemError(), std::system_category(), path_);
    }
    return {room.data(), static_cast<std::size_t>(in_->gcount())};
}

FileParseError::Place ByteSource::placeOf(std::size_t offset) {
    in_->clear();
    in_->seekg(0);
    std::array<char, 1U << 14U> block{};
    FileParseError::Place place;
    place.line = 1;
    std::size_t lineStart = 0;
    while (place.offset < offset) {
        const std::size_t wanted = std::min(block.size(), offset - place.offset);
        const std::string_view bytes = read({block.data(), wanted});
        if (bytes.empty()) {
            break;
        }
        place.line += static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n'));
        if (const std::size_t lineBreak = bytes.rfind('\n'); lineBreak != std::string_view::npos) {
            lineStart = place.offset + lineBreak + 1;
        }
        place.offset += bytes.size();
    }
    place.position = place.offset - lineStart + 1;
    in_->clear();
    in_->seekg(static_cast<std::streamoff>(lineStart));
    const std::string_view line = read({block.data(), kLongestSource + 4});
    place.source = gpxText(cut(line.substr(0, line.find_first_of("\r\n"))));
    return place;
}

}  // namespace marlune
