// Files written so that a failure leaves what was there.
#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>
#include <system_error>

namespace marlune {

// How the new file takes the old one's place.
enum class Replacement {
    rename,   // written beside it and renamed over it
    newName,  // written under a free name, for file systems that do not rename over a file and do
              // not seek; then the old one is removed, and the new one gets its name if the file
              // system renames at all
};

// What is done to names; file systems that can do less than the local ones stand in for it in
// tests.
class FileNames {
public:
    FileNames() = default;
    FileNames(const FileNames&) = delete;
    FileNames& operator=(const FileNames&) = delete;
    virtual ~FileNames() = default;

    virtual void rename(const std::filesystem::path& from, const std::filesystem::path& to,
                        std::error_code& error);
    virtual void remove(const std::filesystem::path& file, std::error_code& error);

    static FileNames& ofSystem();
};

// What write puts into the stream becomes the file of that name; links are followed, a device or a
// pipe is written directly. Throws std::system_error. Returns where the file is.
std::filesystem::path saveFile(const std::string& path,
                               const std::function<void(std::ostream&)>& write,
                               Replacement replacement = Replacement::rename,
                               FileNames& names = FileNames::ofSystem());

}  // namespace marlune
