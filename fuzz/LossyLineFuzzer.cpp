// The control and a virtual receiver over a line with a fault: the records come through as they
// are, or something was told. Input: unit, service, kind of fault, its place (2 bytes), how much.
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "FuzzPort.h"
#include "Require.h"
#include "control/ControlFactory.h"
#include "receivers/Families.h"
#include "receivers/ReceiverPort.h"

namespace {

using namespace marlune;
using receivers::ReceiverOptions;
using receivers::ReceiverPort;

struct Unit {
    const char* family;
    const char* name;
};
constexpr Unit kUnits[] = {{"GRM", "map162"}, {"GRM", "gps12cx"}, {"GRM", "map60"}, {"GRM", "gps3"},
                           {"MGN", "gps315"}, {"MLR", "sp24"},    {"MLR", "valsat"}};

using Service = void (*)(GpsControl&, const std::string& file);
constexpr Service kServices[] = {
    [](GpsControl& control, const std::string&) { control.getWaypts(); },
    [](GpsControl& control, const std::string&) { control.getTracks(); },
    [](GpsControl& control, const std::string&) { control.GetRoutes(); },
    [](GpsControl& control, const std::string&) { control.getProximites(); },
    [](GpsControl& control, const std::string& file) { control.SendWaypts(file); },
    [](GpsControl& control, const std::string& file) { control.SendRoutes(file); },
    [](GpsControl& control, const std::string& file) { control.SendTraces(file); },
};
constexpr std::size_t kWaypoints = 0;
constexpr std::size_t kRoutes = 2;
constexpr std::size_t kFirstUpload = 4;

struct Choice {
    std::size_t unit;
    std::size_t service;
    [[nodiscard]] bool isUpload() const { return service >= kFirstUpload; }
    bool operator<(const Choice& other) const {
        return std::pair(unit, service) < std::pair(other.unit, other.service);
    }
};

// What a host application, and the receiver's user, know afterwards.
struct Outcome {
    std::vector<std::string> records;
    std::vector<std::string> before;  // of an upload: what the receiver held
    std::vector<std::string> boxes;
    CapabilitySource capabilities = CapabilitySource::none;
    bool allWell = true;  // as the reports tell it

    // The first records that are not alike.
    [[nodiscard]] std::string differenceFrom(const Outcome& other) const {
        const auto [ours, theirs] = std::mismatch(records.begin(), records.end(),
                                                  other.records.begin(), other.records.end());
        return "got:    " + (ours == records.end() ? "nothing" : *ours) +
               "\nwanted: " + (theirs == other.records.end() ? "nothing" : *theirs) + "\n";
    }
};

class Run {
public:
    Run(Choice choice, const std::string& fault) : choice_(choice) {
        constexpr double kPatience = 600;
        host_.onStopRequested = [this] { return host_.elapsed() > kPatience; };
        ReceiverOptions options;
        options.unit = kUnits[choice.unit].name;
        options.now = 39083.5;
        if (!fault.empty()) {
            options.faults = {fault};
        }
        const std::string family = kUnits[choice.unit].family;
        auto port =
            std::make_unique<ReceiverPort>(host_, receivers::receiverFamily(family).make(options));
        receiver_ = &port->receiver();
        control_ = ControlFactory::make(host_, events_, std::move(port), nullptr);
        control_->SetGpsMark(family);
        control_->setNumPort(numPort::Comm1);
    }

    Outcome outcome() {
        outcome_.before = receiver_->lines();
        outcome_.allWell = control_->gpsConnect();
        outcome_.capabilities = control_->lastConnection().capabilities;
        if (outcome_.allWell) {
            // Its routes are names of waypoints.
            if (kUnits[choice_.unit].family == std::string("MGN") && choice_.service == kRoutes) {
                serve(kWaypoints);
            }
            serve(choice_.service);
        }
        if (choice_.isUpload()) {
            outcome_.records = receiver_->lines();
        }
        outcome_.boxes = host_.boxTexts();
        outcome_.allWell =
            outcome_.allWell && control_->lastConnection().damaged == 0 && !host_.stopRequested();
        return std::move(outcome_);
    }

private:
    // What is uploaded: a file with a record of each kind, so that it serves them all.
    static const std::string& file() {
        static const TempFolder kFolder;
        static const std::string kFile =
            kFolder.write("upload.txt",
                          "N;TRACK\r\nT;45;45;32874.5;152;-1\r\nT;45;-45;0;0;0\r\nR;7;WAY HOME\r\n"
                          "W;NEW;45;45;NOTE;0;18;0\r\nW;NEWER;-45;-90;16;0;16;0\r\n");
        return kFile;
    }

    void serve(std::size_t service) {
        kServices[service](*control_, file());
        const TransferReport& report = control_->lastTransfer();
        outcome_.allWell = outcome_.allWell && report.isWhole() && report.damaged == 0;
    }

    Choice choice_;
    FakeHost host_;
    RecordedEvents events_{[this](const std::string& text) {
        if (text.ends_with("|D")) {
            outcome_.records.push_back(text);
        }
    }};
    Outcome outcome_;
    const receivers::VirtualReceiver* receiver_ = nullptr;
    std::unique_ptr<GpsControl> control_;
};

const Outcome& undisturbed(Choice choice) {
    static std::map<Choice, Outcome> known;
    const auto found = known.find(choice);
    return found != known.end() ? found->second
                                : known.emplace(choice, Run(choice, "").outcome()).first->second;
}

// But for its number in the list, which stands between the first two bars.
bool isSameRecord(const std::string& one, const std::string& other) {
    return one.substr(one.find('|', one.find('|') + 1)) ==
           other.substr(other.find('|', other.find('|') + 1));
}

std::string faultOf(FuzzInput& input) {
    constexpr const char* kBytes[] = {"drop:at=", "garble:at=", "double:at="};
    constexpr const char* kPackets[] = {"silence", "refuse", "unknown", "hangup", "short"};
    const std::uint8_t kind = input.byte();
    const unsigned place = input.byte() + 256U * input.byte();
    if (kind % 2 == 0) {
        return kBytes[kind / 2 % std::size(kBytes)] + std::to_string(1 + place % 8192) +
               (kind < 128 ? "" : ",way=heard");
    }
    const std::string name = kPackets[kind / 2 % std::size(kPackets)];
    const std::string keep = name == "short" ? ",keep=" + std::to_string(input.byte()) : "";
    return name + ":packet=" + std::to_string(1 + place % 256) + keep;
}

// What nobody can tell of lists of sentences and blocks: that they lack their first records. What
// came before may have swallowed them: a sentence that was under way when the list began, or the
// block that begins it and has lost its seam. The first point that comes begins a segment in any
// case.
bool isTail(const Outcome& faulty, const Outcome& clean) {
    const auto& came = faulty.records;
    const auto& sent = clean.records;
    return !came.empty() && came.size() < sent.size() &&
           std::equal(came.rbegin(), std::prev(came.rend()), sent.rbegin(), isSameRecord);
}

// Of an MLR receiver's also that they lack their last. Sentences that nobody asked for end as the
// unit's user pleases; the block that closes a list is not looked at, whatever it swallowed.
bool isHead(const Outcome& faulty, const Outcome& clean) {
    const auto& came = faulty.records;
    const auto& sent = clean.records;
    return came.size() < sent.size() && std::equal(came.begin(), came.end(), sent.begin());
}

// And that a whole sentence is missing: nobody counts them.
bool isWithoutASentence(const std::string& unit, const std::string& fault) {
    return (unit == "gps315" || unit == "valsat") && fault.starts_with("short") &&
           fault.ends_with(",keep=0");
}

// And that the end of an upload was lost, whose acknowledgement nobody waits for: a receiver then
// keeps nothing of it.
bool isWithoutItsEnd(const Choice& choice, const Outcome& faulty) {
    return choice.isUpload() && faulty.records == faulty.before;
}

// And what has changed in a block, which carries no checksum.
bool isBeyondTelling(const Choice& choice, const std::string& fault, const Outcome& faulty,
                     const Outcome& clean) {
    const std::string unit = kUnits[choice.unit].name;
    const std::string family = kUnits[choice.unit].family;
    return (unit == "sp24" && fault.starts_with("garble")) ||
           (family != "GRM" && isTail(faulty, clean)) ||
           (family == "MLR" && isHead(faulty, clean)) || isWithoutASentence(unit, fault) ||
           isWithoutItsEnd(choice, faulty);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input({bytes, size});
    const Choice choice{input.byte() % std::size(kUnits), input.byte() % std::size(kServices)};
    if (choice.isUpload() && kUnits[choice.unit].family != std::string("GRM")) {
        return -1;  // nobody answers the sentences of an upload
    }
    const std::string fault = faultOf(input);
    const Outcome& clean = undisturbed(choice);
    const Outcome faulty = Run(choice, fault).outcome();
    const bool told = faulty.boxes != clean.boxes || faulty.capabilities != clean.capabilities ||
                      faulty.allWell != clean.allWell;
    if (faulty.records != clean.records && !told &&
        !isBeyondTelling(choice, fault, faulty, clean)) {
        std::cerr << kUnits[choice.unit].family << ' ' << kUnits[choice.unit].name << ", service "
                  << choice.service << ": " << fault << '\n'
                  << faulty.differenceFrom(clean);
        require(false);
    }
    return 0;
}
