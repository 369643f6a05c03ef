#include "finder/Finder.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "base/FilePath.h"
#include "base/NoCase.h"
#include "control/Families.h"
#include "finder/ProbeHost.h"
#include "marlune/GpsControl.h"
#include "receivers/BuiltIn.h"

namespace marlune::finder {
std::string aboutReceiver(const std::string& ident) {
    const std::size_t at = ident.find("GPSId:");
    return at == std::string::npos ? ident : ident.substr(at);
}

std::string Found::options() const {
    std::string text;
    if (port.kind == PortKind::serial || port.kind == PortKind::builtIn) {
        text = "--port " + port.path + " ";
    } else if (port.kind == PortKind::drive &&
               equalsNoCase(filePath(port.path).filename().string(), "GARMIN")) {
        // The name alone makes a folder the drive; others are found by their labels again.
        text = "--drive '" + port.path + "' ";
    }
    return text + "--mark " + mark;
}

std::string Finder::reasonToSkip(const PortEntry& port) const {
    if (!port.pluggedIn && !all) {
        return "nothing is plugged in";
    }
    if (!port.mayOpen) {
        return "this user may not open it";
    }
    return port.holder.empty() ? std::string() : "in use by " + port.holder;
}

std::optional<Found> Finder::ask(const PortEntry& port) {
    if (const std::string reason = reasonToSkip(port); !reason.empty()) {
        if (onSkip) {
            onSkip(port, reason);
        }
        return std::nullopt;
    }
    if (!port.mark.empty()) {
        return askFor(port, port.mark);
    }
    // In the control's order: what one family asks must not disturb the next.
    for (const FamilyTraits& family : familyTraits()) {
        if (!family.isChosen || family.isOnUsb) {
            continue;
        }
        if (host_.stopRequested()) {
            break;
        }
        if (auto found = askFor(port, std::string(family.code))) {
            return found;
        }
    }
    return std::nullopt;
}

std::vector<Found> Finder::find(const std::vector<PortEntry>& ports) {
    std::vector<Found> all;
    for (const PortEntry& port : ports) {
        if (host_.stopRequested()) {
            break;
        }
        // A unit on the bus, or else the first drive, is who answers for the family.
        const bool asked = port.mark == "GRM_USB" &&
                           std::any_of(all.begin(), all.end(),
                                       [](const Found& found) { return found.mark == "GRM_USB"; });
        if (asked) {
            continue;
        }
        if (auto found = ask(port)) {
            all.push_back(std::move(*found));
        }
    }
    return all;
}

std::optional<Found> Finder::askFor(const PortEntry& port, const std::string& mark) {
    if (onAsk) {
        onAsk(port, mark);
    }
    std::unique_ptr<receivers::BuiltIn> receiver;
    std::string device = port.path;
    if (port.kind == PortKind::builtIn) {
        constexpr std::string_view kVirtual = "virtual:";
        receiver = std::make_unique<receivers::BuiltIn>(
            mark, port.path.substr(std::min(port.path.size(), kVirtual.size())));
        device = receiver->path();
    }
    ProbeHost host(host_, device, patience);
    GpsControlEvents nobody;
    GpsControl control(host, nobody);
    control.SetGpsMark(mark);
    control.setNumPort(numPort::Comm1);
    if (!control.gpsConnect()) {
        return std::nullopt;
    }
    // Once disconnected, the text is what the identification learnt, and asks nobody again.
    control.gpsDisconnect();
    return Found{port, mark, aboutReceiver(control.getIdent())};
}

}  // namespace marlune::finder
