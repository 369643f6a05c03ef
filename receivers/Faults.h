// What goes wrong on a line or in a receiver, on order and repeatably.
//
// A fault is one text, "NAME:KEY=VALUE,KEY=VALUE":
//
//   drop:at=N    drop:p=P       one byte is lost: the Nth, or each with the probability P
//   garble:at=N  garble:p=P     one byte arrives changed
//   double:at=N  double:p=P     one byte arrives twice
//     ,way=heard                of the bytes that the receiver hears; without it, of those it says
//   silence:packet=N            the receiver falls silent from its Nth packet on
//   refuse:packet=N             the Nth packet heard that wants an answer is refused
//   unknown:packet=N            an unknown packet comes in front of the Nth one said
//   short:packet=N,keep=BYTES   the Nth packet said is cut after BYTES bytes (half of it without
//                               keep)
//   hangup:packet=N             the receiver hangs up in place of its Nth packet
//     ,of=LABEL                 counts only packets of that kind: a packet id ("of=35") or a
//                               sentence's name ("of=PMGNWPL")
//     ,for=COUNT                how many packets the fault lasts, of whatever kind: for ever for
//                               silence, one for refuse, unknown and short
//   seed=N                      what chance draws from, for p and garble; 1 without it
//
// Bytes and packets count from 1, over the receiver's whole life.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::receivers {

class Faults {
public:
    // Which bytes: what the receiver says, or what it hears.
    enum class Way { said, heard };

    // What becomes of a packet that is about to be said.
    struct Fate {
        bool silent = false;
        bool unknownFirst = false;
        bool hangUp = false;
        bool cutShort = false;
        std::optional<std::size_t> keep;  // with cutShort: how many bytes; nothing means half
    };

    Faults() = default;
    // Throws std::invalid_argument, whose text names the fault's text and what is wrong with it.
    explicit Faults(const std::vector<std::string>& texts);

    // The syntax, for a program's help.
    static std::string help();

    // Counts a packet that is about to be said and tells what becomes of it.
    Fate nextSaid(std::string_view label);

    // Counts a packet that was heard and tells whether it must be refused.
    bool refuses(std::string_view label);

    // Whether any fault touches bytes of that way.
    [[nodiscard]] bool wears(Way way) const;

    // Drops, garbles and doubles bytes, counting them.
    void wear(std::vector<std::uint8_t>& bytes, Way way);

private:
    enum class Kind { drop, garble, twice, silence, refuse, unknown, cut, hangUp };

    struct Fault {
        Kind kind = Kind::drop;
        Way way = Way::said;
        std::uint64_t at = 0;  // the byte or packet that it starts at; 0 when chance decides
        double probability = 0;
        std::string label;
        std::uint64_t lasts = 1;
        std::optional<std::size_t> keep;
        std::uint64_t counted = 0;  // matching packets so far
        std::uint64_t left = 0;     // packets that it still lasts
    };

    static Fault parse(const std::string& text);
    static void setKey(Fault& fault, const std::string& text, std::string_view key,
                       std::string_view value);
    static void check(const Fault& fault, const std::string& text);
    static bool holds(Fault& fault, std::string_view label);
    bool strikes(const Fault& fault, Way way, std::uint64_t position);

    std::vector<Fault> faults_;
    std::mt19937 chance_{1};
    std::uint64_t bytesSaid_ = 0;
    std::uint64_t bytesHeard_ = 0;
};

}  // namespace marlune::receivers
