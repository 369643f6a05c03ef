// A sentence being signed or acknowledged. Wire text (see Sentence.h).
#pragma once

#include <string>
#include <string_view>

namespace marlune {

class NmeaPacket {
public:
    // The sentence from "$" through "*", without checksum digits.
    void SetAttributes(std::string_view text) { text_ = text; }
    [[nodiscard]] const std::string& text() const { return text_; }

    // The exclusive or of all characters but the first and the last, whatever those are, as two
    // hexadecimal capitals.
    [[nodiscard]] std::string Signer() const;

    // Makes this packet the acknowledgement of a sentence with that checksum and returns it ready
    // to be sent: "$PMGNCSM,3D*12" CR LF.
    std::string AckMgn(std::string_view checksum);

    // Kept for their names; they have never done anything.
    [[nodiscard]] static std::string Ecrire() { return {}; }
    [[nodiscard]] static std::string Lire() { return {}; }

private:
    std::string text_;
};

// A sentence from "$" through "*" with its checksum and line ending.
std::string signedSentence(std::string text);

}  // namespace marlune
