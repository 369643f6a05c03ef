// The kernel's own structure is used, because the C library's has no place for a rate that is not
// one of its constants, and the two declarations exclude each other in one file.
#include "serial/TerminalLine_linux.h"

#include <asm/termbits.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace marlune {
namespace {

struct StandardRate {
    std::uint32_t baud;
    tcflag_t code;
};

// Standard rates go by their constants, so that every program reads them back.
constexpr std::array<StandardRate, 12> kStandardRates = {{{1200, B1200},
                                                          {1800, B1800},
                                                          {2400, B2400},
                                                          {4800, B4800},
                                                          {9600, B9600},
                                                          {19200, B19200},
                                                          {38400, B38400},
                                                          {57600, B57600},
                                                          {115200, B115200},
                                                          {230400, B230400},
                                                          {460800, B460800},
                                                          {921600, B921600}}};

constexpr std::array<tcflag_t, 4> kSizeCodes = {CS5, CS6, CS7, CS8};

void makeRaw(termios2& line) {
    line.c_iflag = 0;
    line.c_oflag = 0;
    line.c_lflag = 0;
    line.c_cflag &= ~tcflag_t{CRTSCTS | CMSPAR};
    line.c_cflag |= CLOCAL | CREAD;
    // A read gives what is here, or waits 100 ms for it and then gives nothing.
    line.c_cc[VMIN] = 0;
    line.c_cc[VTIME] = 1;
}

void setRate(termios2& line, std::uint32_t baud) {
    const auto* const rate =
        std::find_if(kStandardRates.begin(), kStandardRates.end(),
                     [baud](const StandardRate& standard) { return standard.baud == baud; });
    const tcflag_t code = rate == kStandardRates.end() ? tcflag_t{BOTHER} : rate->code;
    // No input rate of its own: it follows the output rate.
    line.c_cflag &= ~tcflag_t{CBAUD | CIBAUD};
    line.c_cflag |= code;
    line.c_ospeed = baud;
    line.c_ispeed = baud;
}

void setFlag(termios2& line, tcflag_t flag, bool on) {
    line.c_cflag = on ? line.c_cflag | flag : line.c_cflag & ~flag;
}

void setCharacter(termios2& line, const LineSettings& settings) {
    if (settings.dataBits) {
        line.c_cflag &= ~tcflag_t{CSIZE};
        line.c_cflag |= kSizeCodes[static_cast<std::size_t>(*settings.dataBits) - 5];
    }
    if (settings.parity) {
        setFlag(line, PARENB, *settings.parity != Parity::none);
        setFlag(line, PARODD, *settings.parity == Parity::odd);
    }
    if (settings.stopBits) {
        setFlag(line, CSTOPB, *settings.stopBits == 2);
    }
}

// Drivers answer with the rate that their divisor gives; a line works within a few per cent.
bool rateTaken(const termios2& asked, const termios2& given) {
    const std::int64_t difference = std::int64_t{given.c_ospeed} - std::int64_t{asked.c_ospeed};
    return std::max(difference, -difference) * 40 <= std::int64_t{asked.c_ospeed};
}

bool characterTaken(const termios2& asked, const termios2& given) {
    constexpr tcflag_t kCharacter = CSIZE | PARENB | PARODD | CSTOPB | CRTSCTS;
    return ((asked.c_cflag ^ given.c_cflag) & kCharacter) == 0;
}

}  // namespace

std::int32_t applyLineSettings(int terminal, const LineSettings& settings) {
    termios2 line{};
    if (::ioctl(terminal, TCGETS2, &line) != 0) {
        return errno;
    }
    makeRaw(line);
    setCharacter(line, settings);
    if (settings.baud) {
        setRate(line, *settings.baud);
    }
    // TCSETS2 acts at once and discards nothing.
    if (::ioctl(terminal, TCSETS2, &line) != 0) {
        return errno;
    }
    termios2 given{};
    if (::ioctl(terminal, TCGETS2, &given) != 0) {
        return errno;
    }
    return rateTaken(line, given) && characterTaken(line, given) ? 0 : EINVAL;
}

}  // namespace marlune
