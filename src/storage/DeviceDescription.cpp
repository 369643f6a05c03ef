#include "storage/DeviceDescription.h"

#include <array>
#include <cstdio>

#include "base/VersionText.h"
#include "storage/GpxValues.h"
#include "storage/XmlText.h"

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
    std::snprintf(text.data(), text.size(), "%.2f", value / 100);
    return text.data();
}

// The folder beside the transfer direction that `direction` selects within a data type.
std::string folderOf(const pugi::xml_node& dataType, const char* direction) {
    const pugi::xml_node found = dataType.select_node(direction).node();
    return found ? textOf(found.parent().select_node(".//Path")) : std::string();
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
    const pugi::xml_node dataType =
        mode.select_node(".//DataType/Name[. ='GPSData']").node().parent();
    device.inputFolder = folderOf(dataType, ".//File/TransferDirection[. ='InputToUnit']");
    device.outputFolder = folderOf(dataType, ".//File/TransferDirection[. ='OutputFromUnit']");
    return device;
}

}  // namespace marlune
