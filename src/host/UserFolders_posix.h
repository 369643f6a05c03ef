// The user's folders by the XDG user directories of Linux desktops.
#pragma once

#include <string>
#include <string_view>

namespace marlune {

// The documents folder that the text of a user-dirs.dirs file names, as in
//     XDG_DOCUMENTS_DIR="$HOME/Mes documents"
// The last such line that is absolute or starts with $HOME counts, as it does for the desktops that
// write the file. Empty when there is none.
std::string xdgDocumentsFolder(std::string_view userDirs, const std::string& home);

}  // namespace marlune
