// A new empty folder that is removed, with what is in it, at the end of its life.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace marlune {

class TempFolder {
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    // Writes a file of that name (UTF-8), making its folders, and returns its path.
    [[nodiscard]] std::string write(const std::string& name, std::string_view content) const;
    // The bytes of a file; empty when there is none.
    [[nodiscard]] std::string read(const std::string& name) const;

private:
    std::filesystem::path path_;
};

}  // namespace marlune
