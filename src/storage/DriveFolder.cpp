#include "storage/DriveFolder.h"

#include <algorithm>
#include <string>
#include <system_error>

#include "base/FilePath.h"
#include "base/NoCase.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kSeparators = "/\\";

// The entry of that name in any case; the name itself when the folder has none.
fs::path entryOf(const fs::path& folder, std::string_view name) {
    std::error_code error;
    fs::path exact = folder / filePath(name);
    if (fs::exists(exact, error)) {
        return exact;
    }
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (equalsNoCase(pathText(entry->path().filename()), name)) {
            return entry->path();
        }
    }
    return exact;
}

bool leadsOut(std::string_view component) {
    return component == ".." || component.find(':') != std::string_view::npos ||
           component.find('\0') != std::string_view::npos;
}

}  // namespace

std::optional<fs::path> insideDrive(const fs::path& root, std::string_view name) {
    if (!name.empty() && kSeparators.find(name.front()) != std::string_view::npos) {
        return std::nullopt;
    }
    fs::path path = root;
    while (!name.empty()) {
        const std::size_t end = std::min(name.find_first_of(kSeparators), name.size());
        const std::string_view component = name.substr(0, end);
        name.remove_prefix(std::min(end + 1, name.size()));
        if (leadsOut(component)) {
            return std::nullopt;
        }
        if (!component.empty() && component != ".") {
            path = entryOf(path, component);
        }
    }
    return staysInside(root, path) ? std::optional(path) : std::nullopt;
}

bool staysInside(const fs::path& root, const fs::path& path) {
    std::error_code error;
    const fs::path from = fs::canonical(root, error);
    if (error) {
        return false;
    }
    const fs::path to = fs::weakly_canonical(path, error);
    return !error &&
           std::mismatch(from.begin(), from.end(), to.begin(), to.end()).first == from.end();
}

}  // namespace marlune
