#include "garmin/values/Fichier.h"

#include <filesystem>
#include <system_error>

#include "base/FilePath.h"

namespace marlune {

bool Fichier::Existant(Host& host) const {
    if (isThere()) {
        return true;
    }
    host.messageBox(Chemin.empty() ? "Fichier non renseigné" : "Fichier non trouvé",
                    BoxIcon::critical);
    return false;
}

bool Fichier::isThere() const {
    // The system would cut the name at a zero byte and find another file.
    if (Chemin.empty() || Chemin.find('\0') != std::string::npos) {
        return false;
    }
    std::error_code error;
    return std::filesystem::is_regular_file(filePath(Chemin), error);
}

}  // namespace marlune
