// A Garmin unit on a serial line.
//
// Link: every good packet but an acknowledgement is acknowledged at once (6; id, 0); a frame with a
// wrong checksum or size is refused (21; id, 0). Of its own packets it sends one, waits until that
// one is acknowledged, however long it takes, then sends the next; it sends one again only when it
// is refused. A frame that stops for a second in its middle is forgotten.
//
// Whatever the host asks anew (a product request, a command, an upload) ends what was under way.
// The abort command also ends the real-time stream.
//
// Not acknowledged by anybody: the further product data (248) that may follow the product data, and
// the records of the real-time stream (51).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "receivers/DeviceData.h"
#include "receivers/VirtualReceiver.h"
#include "receivers/garmin/Frame.h"
#include "receivers/garmin/Holdings.h"
#include "receivers/garmin/PacketIds.h"
#include "receivers/garmin/Units.h"

namespace marlune::receivers::garmin {

class GarminReceiver : public VirtualReceiver {
public:
    struct Settings {
        GarminUnit unit;
        DeviceData data;
        int baud = 9600;
        double rate = 1;        // real-time records per second
        double date = 39083.5;  // days since 30/12/1899 when it first hears or is due
        std::vector<std::string> faults;
    };

    // Throws std::invalid_argument for tags or faults that cannot be.
    explicit GarminReceiver(Settings settings);

    [[nodiscard]] std::vector<std::string> lines() const override;

protected:
    void heard(std::span<const std::uint8_t> bytes, double now) override;
    void elapsed(double now) override;
    void ended() override { endTransfer(); }
    [[nodiscard]] std::optional<double> deadline() const override { return pvtDue_; }
    [[nodiscard]] std::vector<std::uint8_t> unknownPacket() const override;

    // How packets go over the line. A serial line wants frames and an acknowledgement for each
    // packet; on a line that does not acknowledge, all packets of an answer follow each other.
    [[nodiscard]] virtual std::vector<std::uint8_t> framed(
        std::uint8_t id, std::span<const std::uint8_t> data) const;
    [[nodiscard]] virtual bool acknowledges() const { return true; }

    // Takes what the host asks or uploads, as it came out of its frame.
    void take(const Packet& packet, double now);

private:
    struct Upload {
        std::size_t announced = 0;
        std::vector<Record> records;
    };

    void startClock(double now);
    void sayPacket(std::uint8_t id, std::span<const std::uint8_t> data);
    void acknowledge(std::uint8_t answer, std::uint8_t id);

    void onPacket(const Packet& packet, double now);
    void onAck(const Packet& packet);
    void onRequest(const Packet& packet, double now);
    void onCommand(const Packet& packet, double now);
    void onUpload(const Packet& packet);

    void sendProduct();
    void send(std::vector<Packet> packets);
    void sendCurrent();
    void sendRecords(const std::vector<Record>& records, const Packet& command);
    void sendTime(double now);
    void sendPosition(double now);
    void sendPvt(double now);
    void endTransfer();

    void storeUpload();

    Settings settings_;
    Holdings holdings_;

    FrameReader reader_;
    double lastHeard_ = 0;
    std::optional<double> started_;  // the clock when the date was settings_.date
    bool off_ = false;

    std::vector<Packet> outgoing_;  // what is being sent; one packet at a time awaits its ACK
    std::size_t current_ = 0;
    std::optional<Upload> upload_;
    std::optional<double> pvtDue_;
};

// As chosen by the options. Both throw std::invalid_argument.
GarminReceiver::Settings garminSettings(const ReceiverOptions& options);
std::unique_ptr<VirtualReceiver> makeGarminReceiver(const ReceiverOptions& options);

}  // namespace marlune::receivers::garmin
