// File names between the control's UTF-8 texts and the platform's own form. Windows keeps them in
// UTF-16 and takes a plain std::string for its code page, so every file is opened by these.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace marlune {

// The path that a UTF-8 text names; both separators are understood on Windows.
std::filesystem::path filePath(std::string_view utf8);

// The path's UTF-8 text, with the platform's separators as they stand in it.
std::string pathText(const std::filesystem::path& path);

}  // namespace marlune
