#include "storage/WholeFile.h"

#include <algorithm>
#include <fstream>
#include <system_error>
#include <vector>

#include "base/FilePath.h"
#include "base/SystemError.h"
#include "host/Services.h"
#include "storage/formats/GpxValues.h"

namespace marlune {
namespace {

// A line's first 200 bytes or so, since a file may be one line; no character is cut.
std::string_view beginning(std::string_view line) {
    std::size_t length = std::min<std::size_t>(line.size(), 200);
    while (length < line.size() && (static_cast<unsigned char>(line[length]) & 0xC0U) == 0x80U) {
        ++length;
    }
    return line.substr(0, length);
}

}  // namespace

std::string readWholeFile(const std::string& path, std::size_t largest) {
    std::ifstream in(filePath(path), std::ios::binary);
    std::string content;
    std::vector<char> block(1U << 16U);
    while (in) {
        in.read(block.data(), static_cast<std::streamsize>(block.size()));
        content.append(block.data(), static_cast<std::size_t>(in.gcount()));
        if (content.size() > largest) {
            throw std::system_error(std::make_error_code(std::errc::file_too_large), path);
        }
    }
    if (!in.eof()) {
        throw std::system_error(lastSystemError(), std::system_category(), path);
    }
    return content;
}

GpxParseError::Place placeAt(std::string_view content, std::size_t offset) {
    offset = std::min(offset, content.size());
    const std::string_view before = content.substr(0, offset);
    const std::size_t lineBreak = before.rfind('\n');
    const std::size_t lineStart = lineBreak == std::string_view::npos ? 0 : lineBreak + 1;
    const std::size_t lineEnd = std::min(content.find_first_of("\r\n", lineStart), content.size());
    GpxParseError::Place place;
    place.source = gpxText(beginning(content.substr(lineStart, lineEnd - lineStart)));
    place.line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    place.position = offset - lineStart + 1;
    place.offset = offset;
    return place;
}

}  // namespace marlune
