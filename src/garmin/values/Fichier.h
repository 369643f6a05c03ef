// A file's path that can be tested for existence.
#pragma once

#include <string>

#include "marlune/Host.h"

namespace marlune {

class Fichier {
public:
    std::string Chemin;  // the path, UTF-8

    // Whether a regular file of exactly that name exists. When not, a critical box tells so:
    // "Fichier non renseigné" for an empty path, "Fichier non trouvé" otherwise.
    bool Existant(Host& host) const;

    // The same without a box.
    [[nodiscard]] bool isThere() const;
};

}  // namespace marlune
