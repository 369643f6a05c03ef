// The debug trace: a text file that tells, when the host switches debugging on, every frame and
// sentence exchanged and each step of the handshakes.
//
// Lines are numbered by one counter for all controls of the process, on whatever threads they live;
// it advances at every line that would be traced, also while debugging is off, so callers trace
// every step unconditionally.
#pragma once

#include <atomic>
#include <cstdint>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace marlune {

class DebugTrace {
public:
    // folder: the user's documents folder. The file is Palimor/OcxDebug.txt in it; neither folder
    // is ever created.
    explicit DebugTrace(const std::string& folder);

    void setDebug(bool on) { debug_ = on; }
    [[nodiscard]] bool debug() const { return debug_; }
    [[nodiscard]] const std::string& path() const { return path_; }

    // Opening and closing ignore errors: without its folder the trace simply has no file.
    void openEmpty();
    void openAppend();
    void close();

    // Writes "number:text" CR LF in Windows-1252 when debugging is on and the file is open.
    void traceLine(std::string_view text);

    // The same for a text that is costly to make: makeText is called only when it will be written.
    template <class MakeText>
    void traceLineOf(MakeText&& makeText) {
        if (writes()) {
            traceLine(std::forward<MakeText>(makeText)());
        } else {
            ++counter_;
        }
    }

private:
    [[nodiscard]] bool writes() const { return debug_ && file_.is_open(); }

    std::string path_;
    std::ofstream file_;
    bool debug_ = false;
    static std::atomic<std::int32_t> counter_;
};

// Each byte as a blank and its decimal number: " 16 10 2".
std::string decimalDump(std::span<const std::uint8_t> bytes);

// The first n bytes (n is clipped to their number), each as a blank and its number in hexadecimal
// capitals without leading zero: " 10 A 2". Kept for its name: nothing here calls it.
std::string hexDump(std::span<const std::uint8_t> bytes, std::int32_t n);

}  // namespace marlune
