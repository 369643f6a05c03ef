// The link between two points of a route: the D210 record and its "L;" text line.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace marlune {

class RteLink {
public:
    std::int16_t linkClass = 0;
    std::array<std::uint8_t, 18> subclass{};
    std::string ident;

    // Fills the fields from a record. Raises the index error when it ends before the ident.
    void GetAttributes(std::string_view format, std::span<const std::uint8_t> data);

    // A direct link to a point of that ident, 30 bytes. Class and subclass are fixed; the ident is
    // cut or padded to 9 characters.
    [[nodiscard]] std::vector<std::uint8_t> Coder(std::string_view format) const;

    [[nodiscard]] const std::string& getNom() const { return ident; }
    void SetIdent(std::string text) { ident = std::move(text); }

    // "L;RteLink ident".
    [[nodiscard]] std::string getIdent() const;
};

}  // namespace marlune
