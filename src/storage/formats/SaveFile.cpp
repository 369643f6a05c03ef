#include "storage/formats/SaveFile.h"

#include <fstream>
#include <system_error>

#include "base/FilePath.h"
#include "base/SystemError.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

using Write = std::function<void(std::ostream&)>;

void writeFile(const fs::path& path, const Write& write) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (out) {
        write(out);
        out.close();
    }
    if (!out) {
        throw std::system_error(lastSystemError(), std::system_category());
    }
}

// The file that a chain of links leads to, whether it exists or not.
fs::path followLinks(fs::path path) {
    constexpr int kLongestChain = 40;
    for (int i = 0; i < kLongestChain && fs::is_symlink(path); ++i) {
        path = path.parent_path() / fs::read_symlink(path);
    }
    return path;
}

bool isTaken(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// A name in the same folder that nothing has, and that no reader takes for a file of records.
fs::path nameBeside(const fs::path& target) {
    fs::path plain = target.parent_path() / ".";
    plain += target.filename();
    plain += ".part";
    fs::path name = plain;
    for (int i = 1; isTaken(name); ++i) {
        name = plain;
        name += std::to_string(i);
    }
    return name;
}

// "Tour-2.gpx" beside "Tour.gpx".
fs::path freeName(const fs::path& target) {
    fs::path name = target;
    for (int i = 2; isTaken(name); ++i) {
        name = target.parent_path() / target.stem();
        name += "-" + std::to_string(i);
        name += target.extension();
    }
    return name;
}

// Runs the action; when it fails, removes the file that was not there before.
template <class Action>
void orRemove(const fs::path& file, FileNames& names, Action&& action) {
    try {
        action();
    } catch (...) {
        std::error_code ignored;
        names.remove(file, ignored);
        throw;
    }
}

fs::path saveUnderNewName(const fs::path& target, const Write& write, FileNames& names) {
    const fs::path name = freeName(target);
    orRemove(name, names, [&] { writeFile(name, write); });
    if (name == target) {
        return target;
    }
    std::error_code kept;
    names.remove(target, kept);
    if (!kept) {
        names.rename(name, target, kept);
    }
    return kept ? name : target;
}

}  // namespace

void FileNames::rename(const fs::path& from, const fs::path& to, std::error_code& error) {
    fs::rename(from, to, error);
}

void FileNames::remove(const fs::path& file, std::error_code& error) {
    fs::remove(file, error);
}

FileNames& FileNames::ofSystem() {
    static FileNames system;
    return system;
}

fs::path saveFile(const std::string& path, const Write& write, Replacement replacement,
                  FileNames& names) {
    // Asked of the name as it stands: the links of /dev/stdout lead to no name that could be
    // opened.
    const auto type = fs::status(filePath(path)).type();
    if (type != fs::file_type::not_found && type != fs::file_type::regular) {
        writeFile(filePath(path), write);
        return filePath(path);
    }
    fs::path target = followLinks(filePath(path));
    if (replacement == Replacement::newName) {
        return saveUnderNewName(target, write, names);
    }
    const fs::path beside = nameBeside(target);
    orRemove(beside, names, [&] {
        writeFile(beside, write);
        std::error_code error;
        names.rename(beside, target, error);
        if (error) {
            throw std::system_error(error);
        }
    });
    return target;
}

}  // namespace marlune
