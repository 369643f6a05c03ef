// Writes an XML document piece by piece, indented, with everything escaped.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {

class XmlWriter {
public:
    // Begins with the XML declaration.
    explicit XmlWriter(std::ostream& out);

    void open(const char* name);
    // Of the element opened last, in front of its content.
    void attribute(std::string_view name, std::string_view value);
    // The text of an element without elements in it.
    void text(std::string_view value);
    void close();
    // Closes until so many elements are open.
    void closeTo(std::size_t depth);

    // A whole element; none for an empty text.
    void element(const char* name, std::string_view value);

    [[nodiscard]] std::size_t depth() const { return open_.size(); }

private:
    void endTag();
    void indent();

    std::ostream& out_;
    std::vector<std::string> open_;
    bool inTag_ = false;   // the last start tag lacks its end
    bool inText_ = false;  // the element opened last holds text
};

}  // namespace marlune
