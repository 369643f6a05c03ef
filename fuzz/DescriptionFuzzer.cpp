// The description file of a unit that is a drive, and the folders that it names.
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "Require.h"
#include "base/FilePath.h"
#include "marlune/Gpx.h"
#include "storage/DeviceDescription.h"
#include "storage/DriveFolder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace marlune;
    namespace fs = std::filesystem;
    try {
        const DeviceDescription device =
            readDeviceDescription({reinterpret_cast<const char*>(data), size});
        const fs::path root = fs::temp_directory_path();
        std::vector<std::string> folders = device.outputFolders;
        folders.push_back(device.inputFolder);
        for (const std::string& folder : folders) {
            const auto inside = insideDrive(root, folder);
            const fs::path normal = inside ? inside->lexically_normal() : root;
            const fs::path way = normal.lexically_relative(root.lexically_normal());
            require(!way.empty() && *way.begin() != "..");
        }
    } catch (const GpxParseError& error) {
        require(error.place().offset <= size);
    }
    return 0;
}
