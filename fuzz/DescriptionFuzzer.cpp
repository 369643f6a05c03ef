// The description file of a unit that is a drive, and the folders that it names.
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "host/FilePath.h"
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
        for (const std::string& folder : {device.inputFolder, device.outputFolder}) {
            const auto inside = insideDrive(root, folder);
            const fs::path normal = inside ? inside->lexically_normal() : root;
            const fs::path way = normal.lexically_relative(root.lexically_normal());
            if (way.empty() || *way.begin() == "..") {
                std::abort();
            }
        }
    } catch (const GpxParseError& error) {
        if (error.place().offset > size) {
            std::abort();
        }
    }
    return 0;
}
