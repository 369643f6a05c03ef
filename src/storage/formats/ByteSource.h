// A file or a text as a stream of bytes that reading errors can be placed in.
#pragma once

#include <fstream>
#include <istream>
#include <memory>
#include <span>
#include <sstream>
#include <string>
#include <string_view>

#include "marlune/RecordFiles.h"

namespace marlune {

class ByteSource {
public:
    // Throws std::system_error for a file that does not open.
    static ByteSource ofFile(const std::string& path);
    static ByteSource ofText(std::string_view text);

    // The next bytes, none at the end. Throws std::system_error when the system does not read.
    std::string_view read(std::span<char> room);

    // Where an offset stands: its line and the position in it. Reads the source anew, so nothing is
    // read behind it.
    FileParseError::Place placeOf(std::size_t offset);

private:
    ByteSource(std::unique_ptr<std::istream> in, std::string path)
        : in_(std::move(in)), path_(std::move(path)) {}

    std::unique_ptr<std::istream> in_;
    std::string path_;
};

}  // namespace marlune
