#include "storage/DeviceDescription.h"

#include <array>
#include <charconv>
#include <utility>

#include "base/VersionText.h"
#include "storage/XmlText.h"
#include "storage/formats/GpxValues.h"

namespace marlune {
namespace {

// "g:Path" becomes "Path", so that the queries find it whatever prefix a unit chose.
class PrefixDropper : public pugi::xml_tree_walker {
public:
    bool for_each(pugi::xml_node& node) override {
        const std::string name(localName(node));
        if (node.type() == pugi::node_element && name != node.name()) {
            node.set_name(name.c_str());
        }
        return true;
    }
};

std::string textOf(const pugi::xpath_node& found) {
    return textIn(found.node());
}

// Hundredths as "#0.00".
std::string versionText(const std::string& hundredths) {
    if (hundredths.empty()) {
        return {};
    }
    constexpr double kLargest = 1e15;
    double value = gpxNumber(hundredths).value_or(0);
    value = value > -kLargest && value < kLargest ? value : 0;
    std::array<char, 32> text{};
    // Not printf, which writes the point that the program's locale has.
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value / 100,
                                   std::chars_format::fixed, 2);
    return {text.data(), end.ptr};
}

// The folders beside the transfer direction within the data types of GPX files.
std::vector<std::string> foldersOf(const pugi::xml_node& mode, const char* direction) {
    const std::string query =
        ".//DataType[Name='GPSData']//File/TransferDirection[. ='" + std::string(direction) + "']";
    std::vector<std::string> folders;
    for (const pugi::xpath_node& found : mode.select_nodes(query.c_str())) {
        std::string folder = textOf(found.node().parent().select_node(".//Path"));
        if (!folder.empty()) {
            folders.push_back(std::move(folder));
        }
    }
    return folders;
}

}  // namespace

DeviceDescription readDeviceDescription(std::string_view xml) {
    pugi::xml_document document;
    loadXml(document, xml);
    PrefixDropper dropper;
    document.traverse(dropper);

    DeviceDescription device;
    device.description = textOf(document.select_node("//Description"));
    device.softwareVersion = versionText(textOf(document.select_node("//SoftwareVersion")));
    device.id = textOf(document.select_node("//Id"));
    const pugi::xml_node mode = document.select_node("//MassStorageMode").node();
    const std::vector<std::string> inputs = foldersOf(mode, "InputToUnit");
    device.inputFolder = inputs.empty() ? std::string() : inputs.front();
    device.outputFolders = foldersOf(mode, "OutputFromUnit");
    return device;
}

}  // namespace marlune
