// XML documents as units and other programs write them: read whole, namespaces aside.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace marlune {

// Reads a document in the encoding that it declares or starts with. Document types are skipped and
// their entities stay as they are written: nothing expands. Throws GpxParseError.
void loadXml(pugi::xml_document& document, std::string_view content);

// "Path" of "g:Path", so that elements are found whatever prefix a program chose.
std::string_view localName(const pugi::xml_node& node);

// All the text directly in an element, between its comments and in its CDATA sections, as gpxText()
// gives it. Empty for no element.
std::string textIn(const pugi::xml_node& element);

}  // namespace marlune
