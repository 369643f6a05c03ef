// Rates that no constant stands for can only be read back in the kernel's own structure, which
// excludes <termios.h> in the same file.
#include <asm/termbits.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include "serial/TerminalLine_posix.h"
#include "support/Pty.h"

namespace marlune {
namespace {

TEST(TerminalLine, SetsStandardRatesByTheirConstantsAndOthersByNumber) {
    const Pty pty;
    struct Case {
        std::uint32_t baud;
        tcflag_t code;
    };
    for (const Case& one : {Case{1200, B1200}, Case{4800, B4800}, Case{38400, B38400},
                            Case{115200, B115200}, Case{14400, BOTHER}, Case{31200, BOTHER}}) {
        LineSettings settings;
        settings.baud = one.baud;
        EXPECT_EQ(applyLineSettings(pty.masterDescriptor(), settings), 0) << one.baud;
        termios2 line{};
        ASSERT_EQ(::ioctl(pty.masterDescriptor(), TCGETS2, &line), 0);
        EXPECT_EQ(line.c_cflag & CBAUD, one.code) << one.baud;
        EXPECT_EQ(line.c_ospeed, one.baud);
        EXPECT_EQ(line.c_ispeed, one.baud);
    }
}

}  // namespace
}  // namespace marlune
