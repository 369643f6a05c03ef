#include "base/RunTimeError.h"

namespace marlune {
namespace {

const char* textOf(RunTimeError::Number number) {
    switch (number) {
        case RunTimeError::overflow:
            return "Dépassement de capacité";
        case RunTimeError::index:
            return "L'indice n'appartient pas à la sélection";
        case RunTimeError::typeMismatch:
            return "Incompatibilité de type";
        case RunTimeError::fileNotFound:
            return "Fichier introuvable";
    }
    return "";
}

}  // namespace

RunTimeError::RunTimeError(Number number) : std::runtime_error(textOf(number)), number_(number) {}

RunTimeError::RunTimeError(int number, const std::string& text)
    : std::runtime_error(text), number_(number) {}

}  // namespace marlune
