// Reads XML documents as other programs write them, element by element, in bounded memory.
//
// Prefixes are taken off the names of elements and attributes. Entities of the document are left as
// they are written: nothing expands. Encodings: UTF-8 (bytes that are not count as Windows-1252),
// UTF-16 with a byte-order mark, and Windows-1252 for documents that call themselves that or
// ISO-8859-1. Control characters count as blanks.
#pragma once

#include <cstddef>
#include <string_view>

#include "storage/formats/ByteSource.h"

namespace marlune {

// The attributes of one element.
class XmlAttributes {
public:
    explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}

    // Empty when there is none of that name.
    [[nodiscard]] std::string_view value(std::string_view name) const;

private:
    const char** pairs_;
};

class XmlHandler {
public:
    XmlHandler() = default;
    XmlHandler(const XmlHandler&) = delete;
    XmlHandler& operator=(const XmlHandler&) = delete;
    virtual ~XmlHandler() = default;

    // depth counts from 1, the root's. False ends the reading: this is no document of the kind.
    virtual bool start(std::string_view name, std::size_t depth,
                       const XmlAttributes& attributes) = 0;
    virtual void text(std::string_view piece, std::size_t depth) = 0;
    virtual void end(std::size_t depth) = 0;
};

// Throws FileParseError for what is no XML document, for what would cost too much memory, and with
// refusal for what the handler refuses.
void readXml(ByteSource& source, XmlHandler& handler, const char* refusal);

}  // namespace marlune
