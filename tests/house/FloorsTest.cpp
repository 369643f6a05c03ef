// The house stands on floors: a folder includes what stands below it, never what stands above.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {
namespace {

namespace fs = std::filesystem;

// From the top. What stands beside each other on one floor does not know of the other.
using Floor = std::vector<std::string_view>;
const std::vector<Floor> kFloors = {
    {"control"},
    {"nmea/magellan", "nmea/mlr", "storage"},
    {"nmea", "storage/formats"},
    {"garmin"},
    {"family"},
    {"garmin/link"},
    {"garmin/records"},
    {"garmin/values"},
    {"serial", "usb"},
    {"host"},
    {"base"},
    {"resources"},
};

// The floor of a folder, counted from the top; below all of them for what is no folder of ours.
std::size_t floorOf(std::string_view folder) {
    const auto floor = std::find_if(kFloors.begin(), kFloors.end(), [&](const Floor& each) {
        return std::find(each.begin(), each.end(), folder) != each.end();
    });
    return static_cast<std::size_t>(floor - kFloors.begin());
}

// The folders that a file's includes name: "garmin/link" for "garmin/link/GpsPacket.h".
std::vector<std::string> includedFolders(const fs::path& file) {
    std::vector<std::string> folders;
    std::ifstream text(file);
    constexpr std::string_view kInclude = "#include \"";
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with(kInclude)) {
            const std::string name = line.substr(kInclude.size());
            folders.push_back(name.substr(0, name.rfind('/')));
        }
    }
    return folders;
}

bool mayInclude(std::string_view folder, std::string_view included) {
    return included == "marlune" || folder == included || floorOf(folder) < floorOf(included);
}

TEST(Floors, NoFolderIncludesWhatStandsAboveOrBesideIt) {
    const fs::path src = fs::path(MARLUNE_SOURCE_FOLDER) / "src";
    std::size_t includes = 0;
    for (const auto& entry : fs::recursive_directory_iterator(src)) {
        const std::string extension = entry.path().extension().string();
        if (extension != ".h" && extension != ".cpp") {
            continue;
        }
        const fs::path file = fs::relative(entry.path(), src);
        const std::string folder = file.parent_path().generic_string();
        EXPECT_LT(floorOf(folder), kFloors.size()) << folder << " stands on no floor";
        for (const std::string& included : includedFolders(entry.path())) {
            EXPECT_TRUE(mayInclude(folder, included)) << file << " includes from " << included;
            ++includes;
        }
    }
    EXPECT_GT(includes, 100U) << "the sources were read";
}

// A room that a program of others includes knows nothing of the house.
TEST(Floors, PublicHeadersIncludePublicHeadersOnly) {
    for (const auto& entry :
         fs::directory_iterator(fs::path(MARLUNE_SOURCE_FOLDER) / "include" / "marlune")) {
        for (const std::string& included : includedFolders(entry.path())) {
            EXPECT_EQ(included, "marlune") << entry.path();
        }
    }
}

// The device side is written from the documents alone, or a test of both sides would test nothing.
TEST(Floors, ReceiversKnowNothingOfTheCodecs) {
    const fs::path root = MARLUNE_SOURCE_FOLDER;
    for (const auto& entry : fs::recursive_directory_iterator(root / "receivers")) {
        for (const std::string& included : includedFolders(entry.path())) {
            const bool known =
                included.starts_with("receivers") || included == "base" || included == "resources";
            EXPECT_TRUE(known) << entry.path() << " includes from " << included;
        }
    }
}

}  // namespace
}  // namespace marlune
