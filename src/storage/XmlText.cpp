#include "storage/XmlText.h"

#include "marlune/Gpx.h"
#include "storage/WholeFile.h"
#include "storage/formats/GpxValues.h"

namespace marlune {

void loadXml(pugi::xml_document& document, std::string_view content) {
    const auto result = document.load_buffer(content.data(), content.size());
    if (!result) {
        throw GpxParseError(result.description(),
                            placeAt(content, static_cast<std::size_t>(result.offset)));
    }
}

std::string_view localName(const pugi::xml_node& node) {
    const std::string_view name = node.name();
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string textIn(const pugi::xml_node& element) {
    std::string text;
    for (const pugi::xml_node& child : element.children()) {
        text += child.value();
    }
    return gpxText(text);
}

}  // namespace marlune
