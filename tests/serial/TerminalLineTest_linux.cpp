// Rates that no constant stands for can only be read back in the kernel's own structure, which
// excludes <termios.h> in the same file.
#include <asm/termbits.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include "serial/TerminalLine_linux.h"
#include "support/Pty.h"

namespace marlune {
namespace {

TEST(TerminalLine, SetsStandardRatesByTheirConstantsAndOthersByNumber) {
    const Pty pty;
    for (const auto& [baud, code] : {std::pair{1200U, B1200},
                                     {4800, B4800},
                                     {38400, B38400},
                                     {115200, B115200},
                                     {14400, BOTHER},
                                     {31200, BOTHER}}) {
        LineSettings settings;
        settings.baud = baud;
        EXPECT_EQ(applyLineSettings(pty.masterDescriptor(), settings), 0) << baud;
        termios2 line{};
        ASSERT_EQ(::ioctl(pty.masterDescriptor(), TCGETS2, &line), 0);
        EXPECT_EQ(line.c_cflag & CBAUD, code) << baud;
        EXPECT_EQ(line.c_ospeed, baud);
        EXPECT_EQ(line.c_ispeed, baud);
    }
}

}  // namespace
}  // namespace marlune
