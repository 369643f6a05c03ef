#include "garmin/Identification.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/CodePage.h"
#include "garmin/Messages.h"
#include "garmin/link/Commands.h"
#include "garmin/values/NumberText.h"

namespace marlune {
namespace {

// A 16-bit little-endian field; bytes that did not come count as 0.
std::uint16_t wordAt(std::span<const std::uint8_t> data, std::size_t at) {
    const unsigned low = at < data.size() ? data[at] : 0U;
    const unsigned high = at + 1 < data.size() ? data[at + 1] : 0U;
    return static_cast<std::uint16_t>(low + 256U * high);
}

}  // namespace

void GarminIdentification::stopTransfer() {
    sendCommand(link_, command::kAbort);
    services_.host.processEvents();
    state_.transferRunning = false;
}

bool GarminIdentification::grmGetAttributes() {
    state_.connected = false;
    abortWhatRuns();
    const LinkPacket reply = requestProduct();
    if (!acceptAcknowledge(reply)) {
        return false;
    }
    const LinkPacket product = link_.receive();
    if (product.pid == 0 && !mayGoOn()) {
        return failSilently();
    }
    if (product.pid != pid::kProductData) {
        if (link_.holds()) {
            showProtocolError(services_.host, product.pid, text::kProductError);
        }
        return fail(ConnectionOutcome::protocolError, product.pid);
    }
    noteDamage(product);
    takeProductData(product.data);
    skipExtendedData();
    link_.acknowledge(pid::kProductData);
    return takeCapabilities(link_.receive());
}

bool GarminIdentification::grmGetAttributesGathered() {
    state_.connected = false;
    link_.request(pid::kProductRequest, {});
    // Copies: the link holds one packet at a time.
    std::optional<std::vector<std::uint8_t>> product;
    std::vector<std::uint8_t> array;
    LinkPacket protocols;
    for (LinkPacket packet = link_.receive(); packet.pid != 0; packet = link_.receive()) {
        switch (packet.pid) {
            case pid::kProductData:
                product.emplace(packet.data.begin(), packet.data.end());
                break;
            case pid::kExtendedProductData:
                services_.trace.traceLine(text::kExtendedProduct);
                break;
            case pid::kProtocolArray:
                array.assign(packet.data.begin(), packet.data.end());
                protocols = {packet.pid, array};
                break;
            default:
                break;
        }
    }
    if (!product) {
        return failSilently();
    }
    takeProductData(*product);
    return takeCapabilities(protocols);
}

void GarminIdentification::abortWhatRuns() {
    stopTransfer();
    (void)link_.receive();
    link_.discard();
}

LinkPacket GarminIdentification::requestProduct() {
    constexpr int kTries = 5;
    constexpr double kDelay = 1.0;
    constexpr std::array<std::uint8_t, 1> kNoData = {0};
    LinkPacket reply;
    for (int attempt = 1; attempt <= kTries && !reply.came && mayGoOn(); ++attempt) {
        services_.trace.traceLine("GetAttributes: essai n° " + std::to_string(attempt) +
                                  " délai: " + numberText(kDelay, '.'));
        link_.send(pid::kProductRequest, kNoData);
        reply = link_.receive();
        if (!reply.came) {
            services_.host.pause(kDelay);
        }
    }
    return reply;
}

bool GarminIdentification::acceptAcknowledge(const LinkPacket& reply) {
    constexpr std::uint16_t kNoFrame = 1;
    if (!reply.came) {
        return failSilently();
    }
    switch (reply.pid) {
        case pid::kAck:
            return true;
        case kNoFrame:
            services_.host.messageBox(
                text::kWrongProtocol + services_.host.lineBreak() + text::kChooseOption,
                BoxIcon::critical);
            return fail(ConnectionOutcome::otherLanguage);
        default:
            showProtocolError(services_.host, reply.pid, text::kAckError);
            return fail(ConnectionOutcome::protocolError, reply.pid);
    }
}

// Nothing came; that is no news once somebody took the line away or wants an end.
bool GarminIdentification::failSilently() {
    const bool abandoned = !mayGoOn() && !services_.host.patienceEnded();
    if (mayGoOn()) {
        services_.host.messageBox(text::kNoAnswer, BoxIcon::critical);
    }
    return fail(abandoned ? ConnectionOutcome::abandoned : ConnectionOutcome::silent);
}

// A connection that was taken away meanwhile is the control's to tell.
bool GarminIdentification::fail(ConnectionOutcome outcome, std::uint16_t pid) {
    if (link_.holds()) {
        services_.reports.connection.outcome = outcome;
        services_.reports.connection.pid = pid;
    }
    return false;
}

void GarminIdentification::noteDamage(const LinkPacket& packet) {
    services_.reports.connection.damaged += packet.damaged ? 1 : 0;
}

void GarminIdentification::takeProductData(std::span<const std::uint8_t> data) {
    constexpr std::size_t kDescription = 4;
    productId_ = wordAt(data, 0);
    softwareVersion_ = wordAt(data, 2);
    const auto text = data.subspan(std::min(kDescription, data.size()));
    const auto end = std::find(text.begin(), text.end(), 0);
    state_.productId = std::to_string(productId_);
    state_.softwareVersion = numberText(softwareVersion_ / 100.0, '.');
    state_.description = fromAnsi(text.first(static_cast<std::size_t>(end - text.begin())));
    services_.trace.traceLine(identText(state_));
}

// A unit that still streams from an earlier connection would never fall silent.
void GarminIdentification::skipExtendedData() {
    constexpr int kYields = 100;
    constexpr double kLongest = 10;  // seconds
    for (int i = 0; i < kYields; ++i) {
        services_.host.processEvents();
    }
    const double end = services_.host.secondsClock() + kLongest;
    while (mayGoOn() && services_.host.secondsClock() < end) {
        const LinkPacket packet = link_.receive();
        if (!packet.came) {
            services_.host.bytesCame();  // this silence was wanted
            return;
        }
        if (packet.pid == pid::kExtendedProductData) {
            services_.trace.traceLine(text::kExtendedProduct);
        }
    }
}

bool GarminIdentification::takeCapabilities(const LinkPacket& packet) {
    if (packet.pid != pid::kProtocolArray && !mayGoOn()) {
        return false;  // the unit was not heard out: what it speaks is not to be guessed
    }
    GpsCapability capability;
    if (packet.pid == pid::kProtocolArray) {
        noteDamage(packet);
        services_.trace.traceLine("Protocole trouvé ....");
        capability.takeProtocolArray(packet.data);
        link_.acknowledge(pid::kProtocolArray);
    } else {
        capability.GetCapability(productId_, softwareVersion_, services_.trace);
        services_.trace.traceLine(capability.source == CapabilitySource::table
                                      ? text::kTableProtocols
                                      : text::kGenericProtocols);
    }
    state_.connected = !capability.tags.empty();
    capability.Decoder();
    services_.reports.connection.capabilities = capability.source;
    unit_.capability = std::move(capability);
    services_.trace.traceLine(unit_.capability->getProtocoles());
    // An array of no protocols connects nobody.
    return state_.connected || fail(ConnectionOutcome::protocolError, packet.pid);
}

void GarminIdentification::grmGetVoltages() {
    constexpr std::size_t kVoltageBytes = 4;
    sendCommand(link_, command::kTransferVoltages);
    const LinkPacket reply = link_.receive();
    if (reply.pid != pid::kAck) {
        showProtocolError(services_.host, reply.pid);
        return;
    }
    const LinkPacket voltages = link_.receive();
    if (voltages.pid != pid::kVoltages || voltages.data.size() < kVoltageBytes) {
        return;
    }
    const char separator = services_.host.decimalSeparator();
    unit_.voltages = text::kVoltages + numberText(wordAt(voltages.data, 0) / 100.0, separator) +
                     " " + numberText(wordAt(voltages.data, 2) / 100.0, separator);
}

}  // namespace marlune
