#include "receivers/garmin/GarminReceiver.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "receivers/garmin/RealTime.h"

namespace marlune::receivers::garmin {
namespace {

// A frame that stops in its middle for that long, in seconds, is given up.
constexpr double kStalled = 1.0;

// No unit has room for more than can be announced.
constexpr std::size_t kMostRecords = 65535;

bool isRecord(std::uint8_t id) {
    constexpr RecordKind kKinds[] = {
        RecordKind::waypoint,  RecordKind::routeHeader, RecordKind::routePoint,
        RecordKind::routeLink, RecordKind::trackHeader, RecordKind::trackPoint,
        RecordKind::proximity,
    };
    return std::find(std::begin(kKinds), std::end(kKinds), RecordKind{id}) != std::end(kKinds);
}

std::vector<std::uint8_t> bytesOf(int number) {
    return {static_cast<std::uint8_t>(number & 0xFF),
            static_cast<std::uint8_t>(number >> 8 & 0xFF)};
}

void addText(std::vector<std::uint8_t>& bytes, const std::string& text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.push_back(0);
}

// Tag letter and number (2) for each tag.
std::vector<std::uint8_t> protocolArray(const std::string& tags) {
    std::vector<std::uint8_t> bytes;
    std::istringstream words(tags);
    for (std::string tag; words >> tag;) {
        const std::vector<std::uint8_t> number = bytesOf(std::stoi(tag.substr(1)));
        bytes.push_back(static_cast<std::uint8_t>(tag.front()));
        bytes.insert(bytes.end(), number.begin(), number.end());
    }
    return bytes;
}

}  // namespace

GarminReceiver::GarminReceiver(Settings settings)
    : VirtualReceiver(settings.baud, Faults(settings.faults)),
      settings_(std::move(settings)),
      holdings_(abilitiesOf(settings_.unit.tags), settings_.data) {
    if (!(settings_.rate > 0 && settings_.rate <= 1000)) {
        throw std::invalid_argument("the rate lies above 0 and up to 1000 records per second");
    }
    for (const Command list :
         {Command::waypoints, Command::routes, Command::tracks, Command::proximities}) {
        if (holdings_.listOf(list).value_or(std::vector<Record>()).size() > kMostRecords) {
            throw std::invalid_argument("the unit has no room for lists of more than " +
                                        std::to_string(kMostRecords) + " records");
        }
    }
}

std::vector<std::string> GarminReceiver::lines() const {
    return linesOf(holdings_.data());
}

std::vector<std::uint8_t> GarminReceiver::unknownPacket() const {
    constexpr std::uint8_t kUnknown = 200;
    constexpr std::array<std::uint8_t, 3> kData = {1, 2, 3};
    return framed(kUnknown, kData);
}

std::vector<std::uint8_t> GarminReceiver::framed(std::uint8_t id,
                                                 std::span<const std::uint8_t> data) const {
    return frameOf(id, data);
}

void GarminReceiver::take(const Packet& packet, double now) {
    startClock(now);
    if (!off_) {
        onRequest(packet, now);
    }
}

void GarminReceiver::startClock(double now) {
    if (!started_) {
        started_ = now;
    }
}

void GarminReceiver::heard(std::span<const std::uint8_t> bytes, double now) {
    startClock(now);
    if (now - lastHeard_ > kStalled) {
        reader_.reset();
    }
    lastHeard_ = now;
    for (const std::uint8_t byte : bytes) {
        const FrameReader::Outcome outcome = reader_.take(byte);
        if (off_) {
            continue;
        }
        if (outcome == FrameReader::Outcome::packet) {
            onPacket(reader_.packet(), now);
        } else if (outcome == FrameReader::Outcome::bad) {
            acknowledge(kNak, reader_.packet().id);
        }
    }
}

void GarminReceiver::elapsed(double now) {
    startClock(now);
    if (!pvtDue_ || now < *pvtDue_) {
        return;
    }
    const double period = 1 / settings_.rate;
    // What was missed is missed.
    pvtDue_ = std::max(*pvtDue_ + period, now + period / 2);
    if (outgoing_.empty()) {
        sendPvt(now);
    }
}

void GarminReceiver::sayPacket(std::uint8_t id, std::span<const std::uint8_t> data) {
    say(std::to_string(id), framed(id, data));
}

void GarminReceiver::acknowledge(std::uint8_t answer, std::uint8_t id) {
    const std::array<std::uint8_t, 2> data = {id, 0};
    sayPacket(answer, data);
}

void GarminReceiver::onPacket(const Packet& packet, double now) {
    if (packet.id == kAck) {
        onAck(packet);
    } else if (packet.id == kNak) {
        if (current_ < outgoing_.size()) {
            sendCurrent();
        }
    } else if (refuses(std::to_string(packet.id))) {
        acknowledge(kNak, packet.id);
    } else {
        acknowledge(kAck, packet.id);
        onRequest(packet, now);
    }
}

void GarminReceiver::onAck(const Packet& packet) {
    const bool ofCurrent = current_ < outgoing_.size() && !packet.data.empty() &&
                           packet.data.front() == outgoing_[current_].id;
    if (!ofCurrent) {
        return;
    }
    ++current_;
    if (current_ < outgoing_.size()) {
        sendCurrent();
    } else {
        endTransfer();
    }
}

void GarminReceiver::onRequest(const Packet& packet, double now) {
    if (packet.id == kProductRequest) {
        sendProduct();
    } else if (packet.id == kCommand) {
        onCommand(packet, now);
    } else {
        onUpload(packet);
    }
}

void GarminReceiver::endTransfer() {
    outgoing_.clear();
    current_ = 0;
    if (upload_) {
        complain("an upload was broken off, nothing of it is kept");
        upload_.reset();
    }
}

void GarminReceiver::send(std::vector<Packet> packets) {
    endTransfer();
    outgoing_ = std::move(packets);
    sendCurrent();
    if (!acknowledges()) {
        while (++current_ < outgoing_.size()) {
            sendCurrent();
        }
        outgoing_.clear();
        current_ = 0;
    }
}

void GarminReceiver::sendCurrent() {
    const Packet& packet = outgoing_[current_];
    sayPacket(packet.id, packet.data);
}

void GarminReceiver::sendProduct() {
    std::vector<Packet> packets(1);
    Packet& product = packets.front();
    product.id = kProductData;
    for (const int number : {settings_.unit.productId, settings_.unit.version}) {
        const std::vector<std::uint8_t> bytes = bytesOf(number);
        product.data.insert(product.data.end(), bytes.begin(), bytes.end());
    }
    addText(product.data, settings_.unit.description);
    std::vector<Packet> further;
    for (const std::string& text : settings_.unit.further) {
        addText(further.emplace_back(Packet{kFurtherProductData, {}}).data, text);
    }
    if (!acknowledges()) {
        packets.insert(packets.end(), further.begin(), further.end());
        further.clear();
    }
    if (settings_.unit.announces) {
        packets.push_back({kProtocolArray, protocolArray(settings_.unit.tags)});
    }
    pvtDue_.reset();
    send(std::move(packets));
    for (const Packet& packet : further) {
        sayPacket(packet.id, packet.data);
    }
}

void GarminReceiver::onCommand(const Packet& packet, double now) {
    endTransfer();
    const int high = packet.data.size() > 1 ? packet.data[1] : 0;
    const int code = packet.data.empty() ? -1 : packet.data[0] + 256 * high;
    const auto command = static_cast<Command>(code);
    if (const auto list = holdings_.listOf(command)) {
        sendRecords(*list, packet);
        return;
    }
    switch (command) {
        case Command::abort:
        case Command::stopPvt:
            pvtDue_.reset();
            break;
        case Command::time:
            sendTime(now);
            break;
        case Command::position:
            sendPosition(now);
            break;
        case Command::startPvt:
            if (holdings_.abilities().pvt) {
                sendPvt(now);
                pvtDue_ = now + 1 / settings_.rate;
            }
            break;
        case Command::voltages:
            // 2.94 and 13.80 volts, in hundredths.
            send({{kVoltages, {38, 1, 100, 5}}});
            break;
        case Command::turnOff:
            off_ = true;
            pvtDue_.reset();
            break;
        case Command::almanac:
        case Command::proximities:
        case Command::routes:
        case Command::tracks:
        case Command::waypoints:
            break;  // a list that the unit lacks: passed over
        default:
            complain("unknown command " + std::to_string(code));
    }
}

void GarminReceiver::sendRecords(const std::vector<Record>& records, const Packet& command) {
    std::vector<Packet> packets;
    packets.reserve(records.size() + 2);
    packets.push_back({kRecordsCount, bytesOf(static_cast<int>(records.size()))});
    for (const Record& record : records) {
        packets.push_back({static_cast<std::uint8_t>(record.kind), record.data});
    }
    packets.push_back({kComplete, {command.data[0], 0}});
    send(std::move(packets));
}

void GarminReceiver::sendTime(double now) {
    if (holdings_.abilities().time) {
        const double date = settings_.date + (now - *started_) / 86400;
        send({{kDate, dateRecord(date)}});
    }
}

void GarminReceiver::sendPosition(double now) {
    if (holdings_.abilities().position) {
        const Motion motion = walk(whereabouts(holdings_.data().places), now - *started_);
        send({{kPosition, positionRecord(motion)}});
    }
}

void GarminReceiver::sendPvt(double now) {
    const double seconds = now - *started_;
    const Motion motion = walk(whereabouts(holdings_.data().places), seconds);
    sayPacket(kPvt, pvtRecord(motion, settings_.date + seconds / 86400));
}

void GarminReceiver::onUpload(const Packet& packet) {
    if (packet.id == kRecordsCount && packet.data.size() == 2) {
        endTransfer();
        upload_ = Upload{static_cast<std::size_t>(packet.data[0] + 256 * packet.data[1]), {}};
        return;
    }
    if (upload_ && isRecord(packet.id)) {
        if (upload_->records.size() <= kMostRecords) {
            upload_->records.push_back({RecordKind{packet.id}, packet.data});
        }
    } else if (upload_ && packet.id == kComplete) {
        storeUpload();
    } else {
        complain("packet " + std::to_string(packet.id) + " came out of turn");
    }
}

void GarminReceiver::storeUpload() {
    const Upload upload = *std::exchange(upload_, std::nullopt);
    if (upload.records.size() != upload.announced) {
        complain(std::to_string(upload.announced) + " records were announced, " +
                 std::to_string(upload.records.size()) + " came");
    }
    for (const std::string& fault : holdings_.store(upload.records)) {
        complain(fault);
    }
}

GarminReceiver::Settings garminSettings(const ReceiverOptions& options) {
    GarminReceiver::Settings settings;
    settings.unit = chooseUnit(options);
    settings.data = options.dataFile.empty() ? builtInData() : readDataFile(options.dataFile);
    settings.baud = options.baud.value_or(settings.baud);
    settings.rate = options.rate;
    settings.date = firstDate(options);
    settings.faults = options.faults;
    return settings;
}

std::unique_ptr<VirtualReceiver> makeGarminReceiver(const ReceiverOptions& options) {
    return std::make_unique<GarminReceiver>(garminSettings(options));
}

}  // namespace marlune::receivers::garmin
