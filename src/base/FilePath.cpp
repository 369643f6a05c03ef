#include "base/FilePath.h"

namespace marlune {

std::filesystem::path filePath(std::string_view utf8) {
    return {std::u8string(utf8.begin(), utf8.end())};
}

std::string pathText(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

}  // namespace marlune
