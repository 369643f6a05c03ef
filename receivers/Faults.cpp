#include "receivers/Faults.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace marlune::receivers {
namespace {

constexpr std::uint64_t kForEver = std::numeric_limits<std::uint64_t>::max();

[[noreturn]] void refuseText(const std::string& text, const std::string& why) {
    throw std::invalid_argument("fault \"" + text + "\": " + why);
}

std::uint64_t wholeNumber(const std::string& text, std::string_view key, std::string_view value) {
    std::uint64_t number = 0;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, number);
    if (error != std::errc() || stop != end) {
        refuseText(text, "\"" + std::string(key) + "\" takes a whole number");
    }
    return number;
}

double probabilityOf(const std::string& text, std::string_view value) {
    double number = -1;
    const char* const end = value.data() + value.size();
    const auto [stop, error] = std::from_chars(value.data(), end, number);
    if (error != std::errc() || stop != end || !(number >= 0 && number <= 1)) {
        refuseText(text, "\"p\" takes a probability from 0 to 1");
    }
    return number;
}

}  // namespace

Faults::Faults(const std::vector<std::string>& texts) {
    constexpr std::string_view kSeed = "seed=";
    for (const std::string& text : texts) {
        if (text.starts_with(kSeed)) {
            const auto seed =
                wholeNumber(text, "seed", std::string_view(text).substr(kSeed.size()));
            chance_.seed(static_cast<std::uint32_t>(seed));
        } else {
            faults_.push_back(parse(text));
        }
    }
}

std::string Faults::help() {
    return "Faults (NAME:KEY=VALUE,KEY=VALUE; bytes and packets count from 1):\n"
           "  drop:at=N    drop:p=P      one byte is lost: the Nth, or each with probability P\n"
           "  garble:at=N  garble:p=P    one byte arrives changed\n"
           "  double:at=N  double:p=P    one byte arrives twice\n"
           "    ,way=heard               of the bytes heard; without it, of the bytes said\n"
           "  silence:packet=N           falls silent from the Nth packet said on\n"
           "  refuse:packet=N            refuses the Nth packet heard that wants an answer\n"
           "  unknown:packet=N           says an unknown packet in front of the Nth one\n"
           "  short:packet=N,keep=BYTES  cuts the Nth packet after BYTES bytes (else in half)\n"
           "  hangup:packet=N            hangs up in place of the Nth packet\n"
           "    ,of=LABEL                counts only packets of that id (35) or sentences of\n"
           "                             that name (PMGNWPL)\n"
           "    ,for=COUNT               lasts that many packets: for ever for silence, else one\n"
           "  seed=N                     what chance draws from; 1 without it\n";
}

Faults::Fault Faults::parse(const std::string& text) {
    struct Name {
        std::string_view name;
        Kind kind;
    };
    static constexpr Name kNames[] = {
        {"drop", Kind::drop},       {"garble", Kind::garble}, {"double", Kind::twice},
        {"silence", Kind::silence}, {"refuse", Kind::refuse}, {"unknown", Kind::unknown},
        {"short", Kind::cut},       {"hangup", Kind::hangUp},
    };
    std::string_view rest = text;
    const std::size_t colon = std::min(rest.find(':'), rest.size());
    const auto* const named =
        std::find_if(std::begin(kNames), std::end(kNames),
                     [&](const Name& each) { return each.name == rest.substr(0, colon); });
    if (named == std::end(kNames)) {
        refuseText(text,
                   "must start with drop, garble, double, silence, refuse, unknown, short or "
                   "hangup and a colon, or be seed=N");
    }
    Fault fault;
    fault.kind = named->kind;
    fault.lasts = fault.kind == Kind::silence ? kForEver : 1;
    rest.remove_prefix(std::min(colon + 1, rest.size()));
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::string_view pair = rest.substr(0, comma);
        const std::size_t equals = std::min(pair.find('='), pair.size());
        setKey(fault, text, pair.substr(0, equals), pair.substr(std::min(equals + 1, pair.size())));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    check(fault, text);
    return fault;
}

void Faults::setKey(Fault& fault, const std::string& text, std::string_view key,
                    std::string_view value) {
    const bool ofBytes = fault.kind <= Kind::twice;
    if (ofBytes ? key == "at" : key == "packet") {
        fault.at = wholeNumber(text, key, value);
        if (fault.at == 0) {
            refuseText(text, "\"" + std::string(key) + "\" counts from 1");
        }
    } else if (ofBytes && key == "p") {
        fault.probability = probabilityOf(text, value);
    } else if (ofBytes && key == "way" && (value == "said" || value == "heard")) {
        fault.way = value == "heard" ? Way::heard : Way::said;
    } else if (!ofBytes && key == "of" && !value.empty()) {
        fault.label = value;
    } else if (!ofBytes && key == "for" && fault.kind != Kind::hangUp) {
        fault.lasts = wholeNumber(text, key, value);
    } else if (fault.kind == Kind::cut && key == "keep") {
        fault.keep = static_cast<std::size_t>(wholeNumber(text, key, value));
    } else {
        refuseText(text, "\"" + std::string(key) + "=" + std::string(value) + "\" means nothing");
    }
}

void Faults::check(const Fault& fault, const std::string& text) {
    const bool ofBytes = fault.kind <= Kind::twice;
    if (!ofBytes && fault.at == 0) {
        refuseText(text, "needs packet=N");
    }
    if (ofBytes && (fault.at == 0) == (fault.probability == 0)) {
        refuseText(text, "needs either at=N or p=P");
    }
}

bool Faults::holds(Fault& fault, std::string_view label) {
    if (fault.label.empty() || fault.label == label) {
        if (++fault.counted == fault.at) {
            fault.left = fault.lasts;
        }
    }
    if (fault.left == 0) {
        return false;
    }
    if (fault.left != kForEver) {
        --fault.left;
    }
    return true;
}

Faults::Fate Faults::nextSaid(std::string_view label) {
    Fate fate;
    for (Fault& fault : faults_) {
        if (fault.kind <= Kind::twice || fault.kind == Kind::refuse || !holds(fault, label)) {
            continue;
        }
        fate.silent |= fault.kind == Kind::silence;
        fate.unknownFirst |= fault.kind == Kind::unknown;
        fate.hangUp |= fault.kind == Kind::hangUp;
        if (fault.kind == Kind::cut) {
            fate.cutShort = true;
            fate.keep = fault.keep;
        }
    }
    return fate;
}

bool Faults::refuses(std::string_view label) {
    bool refused = false;
    for (Fault& fault : faults_) {
        refused |= fault.kind == Kind::refuse && holds(fault, label);
    }
    return refused;
}

bool Faults::wears(Way way) const {
    return std::any_of(faults_.begin(), faults_.end(), [way](const Fault& fault) {
        return fault.kind <= Kind::twice && fault.way == way;
    });
}

bool Faults::strikes(const Fault& fault, Way way, std::uint64_t position) {
    if (fault.kind > Kind::twice || fault.way != way) {
        return false;
    }
    if (fault.at != 0) {
        return fault.at == position;
    }
    return static_cast<double>(chance_()) < fault.probability * 4294967296.0;
}

void Faults::wear(std::vector<std::uint8_t>& bytes, Way way) {
    if (!wears(way)) {
        return;
    }
    std::uint64_t& position = way == Way::said ? bytesSaid_ : bytesHeard_;
    std::vector<std::uint8_t> worn;
    worn.reserve(bytes.size());
    for (std::uint8_t byte : bytes) {
        ++position;
        std::size_t copies = 1;
        for (const Fault& fault : faults_) {
            if (!strikes(fault, way, position)) {
                continue;
            }
            if (fault.kind == Kind::garble) {
                byte = static_cast<std::uint8_t>(byte ^ (1U + chance_() % 255U));
            } else {
                copies = fault.kind == Kind::drop ? 0 : copies * 2;
            }
        }
        worn.insert(worn.end(), copies, byte);
    }
    bytes = std::move(worn);
}

}  // namespace marlune::receivers
