#include "host/UserFolders_posix.h"

namespace marlune {
namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view{} : text.substr(first);
}

// Removes the prefix, and blanks before it; false when the text does not start so.
bool skip(std::string_view& text, std::string_view prefix) {
    const std::string_view rest = withoutLeadingBlanks(text);
    if (!rest.starts_with(prefix)) {
        return false;
    }
    text = rest.substr(prefix.size());
    return true;
}

// The value up to the closing quote; a backslash takes the next character as it is.
std::string unquoted(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size() && text[i] != '"'; ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            ++i;
        }
        value += text[i];
    }
    return value;
}

std::string folderOfLine(std::string_view line, const std::string& home) {
    if (!skip(line, "XDG_DOCUMENTS_DIR") || !skip(line, "=") || !skip(line, "\"")) {
        return {};
    }
    std::string folder;
    if (line.starts_with("$HOME/") || line.starts_with("$HOME\"")) {
        folder = home + unquoted(line.substr(5));
    } else if (line.starts_with('/')) {
        folder = unquoted(line);
    }
    while (folder.size() > 1 && folder.back() == '/') {
        folder.pop_back();
    }
    return folder;
}

}  // namespace

std::string xdgDocumentsFolder(std::string_view userDirs, const std::string& home) {
    std::string found;
    while (!userDirs.empty()) {
        const std::size_t end = userDirs.find('\n');
        std::string folder = folderOfLine(userDirs.substr(0, end), home);
        if (!folder.empty()) {
            found = std::move(folder);
        }
        userDirs.remove_prefix(end == std::string_view::npos ? userDirs.size() : end + 1);
    }
    return found;
}

}  // namespace marlune
