#include "cli/PortCommands.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "finder/Finder.h"
#include "words/Phrases.h"
#include "words/Speech.h"

namespace marlune::cli {
namespace {

using finder::Found;
using finder::PortEntry;
using finder::PortKind;

constexpr std::size_t kColumns = 5;
using Row = std::array<std::string, kColumns>;

// Characters, not bytes.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
    }));
}

std::string tableOf(const std::vector<Row>& rows) {
    std::array<std::size_t, kColumns> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < kColumns; ++i) {
            widths[i] = std::max(widths[i], widthOf(row[i]));
        }
    }
    std::string text;
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < kColumns; ++i) {
            line += row[i] + std::string(widths[i] + 2 - widthOf(row[i]), ' ');
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

std::string whatIsThere(const PortEntry& port) {
    std::string text = port.vendor;
    if (!port.product.empty() && port.product != port.vendor) {
        text += (text.empty() ? "" : " ") + port.product;
    }
    switch (port.kind) {
        case PortKind::usb:
            return text + " (USB)";
        case PortKind::drive:
            return text + " (drive)";
        case PortKind::mtp:
            return text + " (MTP)";
        default:
            return text.empty() ? "-" : text;
    }
}

Row rowOf(const PortEntry& port) {
    return {port.path, port.number == 0 ? "-" : "COM" + std::to_string(port.number),
            port.mayOpen ? "yes" : "no", port.holder.empty() ? "-" : port.holder,
            whatIsThere(port)};
}

// A port that the user names is asked whatever is plugged into it.
std::vector<PortEntry> namedPorts(const std::vector<std::string>& names, HostServices& host) {
    const std::vector<PortEntry> known = finder::listPorts(host);
    std::vector<PortEntry> ports;
    for (const std::string& name : names) {
        const PortChoice choice = PortChoice::parse(name);
        PortEntry port;
        port.path = choice.kind == PortChoice::Kind::number ? host.portDevice(choice.number) : name;
        const auto found = std::find_if(known.begin(), known.end(), [&](const PortEntry& each) {
            return each.path == port.path;
        });
        if (choice.kind == PortChoice::Kind::builtIn) {
            const std::vector<PortEntry> all = finder::virtualPorts();
            const auto unit = std::find_if(all.begin(), all.end(), [&](const PortEntry& each) {
                return each.path.starts_with(name);
            });
            if (unit == all.end()) {
                throw std::invalid_argument("there is no virtual receiver \"" + choice.text + "\"");
            }
            port = *unit;
        } else if (found != known.end()) {
            port = *found;
        } else {
            port.holder = finder::holderOf(port.path);
        }
        port.pluggedIn = true;
        ports.push_back(std::move(port));
    }
    return ports;
}

std::vector<Found> find(const Options& options, HostServices& host, Output& messages) {
    const words::Speech say(options.language);
    finder::Finder finder(host);
    finder.all = options.all;
    if (options.timeout && *options.timeout > 0) {
        finder.patience = *options.timeout;
    }
    finder.onAsk = [&](const PortEntry& port, const std::string& mark) {
        messages.writeForeign(say(words::phrase::kAskingFor, {port.path, mark}) + "\n");
    };
    finder.onSkip = [&](const PortEntry& port, const std::string& reason) {
        if (port.pluggedIn) {
            messages.writeForeign(say(words::phrase::kNotAsked, {port.path, reason}) + "\n");
        }
    };
    return finder.find(options.ports.empty() ? finder::listPorts(host)
                                             : namedPorts(options.ports, host));
}

}  // namespace

ExitStatus listPorts(HostServices& host, Output& out) {
    std::vector<Row> rows = {{"PORT", "COM", "MAY OPEN", "IN USE BY", "WHAT"}};
    for (const PortEntry& port : finder::listPorts(host)) {
        rows.push_back(rowOf(port));
    }
    out.writeForeign(tableOf(rows));
    return out.broken() ? kFailed : kDone;
}

ExitStatus findReceivers(const Options& options, HostServices& host, Output& out,
                         Output& messages) {
    const std::vector<Found> all = find(options, host, messages);
    for (const Found& found : all) {
        messages.writeForeign(found.port.path + ": " + found.identity + "\n");
        out.write(found.options() + "\n");
    }
    if (all.empty()) {
        messages.writeForeign(
            "marlune: " + words::Speech(options.language)(words::phrase::kNobody) + "\n");
    }
    return all.empty() || out.broken() ? kFailed : kDone;
}

Options withFoundPort(Options options, HostServices& host, Output& messages) {
    const words::Speech say(options.language);
    std::vector<Found> all = find(options, host, messages);
    if (!options.mark.empty()) {
        const std::string family = options.family();
        std::erase_if(all, [&](const Found& found) { return found.mark != family; });
    }
    if (all.empty()) {
        throw std::runtime_error(say(words::phrase::kNobody));
    }
    if (all.size() > 1) {
        std::string text = say(words::phrase::kSeveral);
        for (const Found& found : all) {
            text += "\n  " + found.options();
        }
        throw std::runtime_error(text);
    }
    const Found& found = all.front();
    options.port = {};
    if (found.port.kind == PortKind::serial) {
        options.port = {PortChoice::Kind::device, 0, found.port.path};
    }
    if (options.mark.empty()) {
        options.mark = found.mark;
    }
    return options;
}

}  // namespace marlune::cli
