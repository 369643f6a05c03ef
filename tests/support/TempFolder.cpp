#include "support/TempFolder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#include "base/FilePath.h"

namespace marlune {

TempFolder::TempFolder() {
    std::random_device random;
    do {
        path_ = std::filesystem::temp_directory_path() /
                ("marlune-test-" + std::to_string(random()) + "-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(path_));
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::write(const std::string& name, std::string_view content) const {
    const std::filesystem::path file = path_ / filePath(name);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << content;
    return pathText(file);
}

std::string TempFolder::read(const std::string& name) const {
    std::ifstream file(path_ / filePath(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace marlune
