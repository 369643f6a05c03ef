// What crosses the line in a download, as turns: the host says so many bytes, then the device says
// its own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace marlune::bench {

class Exchange {
public:
    // A unit that announces the records' data type tells who it is.
    static Exchange handshake(const std::string& protocols);
    // A download of so many records of that data type, "D108" or "D301".
    static Exchange download(const std::string& type, std::uint32_t records);

    // The device's part of a turn; the host's part is `heard` bytes long.
    struct Turn {
        std::size_t heard;
        std::span<const std::uint8_t> said;
    };
    [[nodiscard]] std::size_t size() const { return turns_.size(); }
    [[nodiscard]] Turn turn(std::size_t index) const;

    // All bytes of both directions.
    [[nodiscard]] std::size_t bytes() const;

private:
    struct Bounds {
        std::size_t heard;
        std::size_t begin;  // of what is said, in said_
    };
    void add(std::size_t heard);
    void say(std::uint8_t pid, std::span<const std::uint8_t> data);

    std::vector<Bounds> turns_;
    std::vector<std::uint8_t> said_;
};

}  // namespace marlune::bench
