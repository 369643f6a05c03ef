#include <gtest/gtest.h>

#include <algorithm>

#include "base/SystemError.h"
#include "host/Services.h"
#include "marlune/SystemHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

TEST(SystemHost, FoldersStandInForTheSystemsDrives) {
    const TempFolder folder;
    (void)folder.write("GARMIN/Garmindevice.xml", "");
    SystemHost host;
    host.addDriveFolder((folder.path() / "GARMIN" / "").string());
    host.addDriveFolder((folder.path() / "missing").string());
    const std::vector<Drive> drives = host.drives();
    ASSERT_EQ(drives.size(), 2U);
    EXPECT_EQ(drives[0].volumeName, "GARMIN");
    EXPECT_EQ(drives[0].driveLetter, "GARMIN");
    EXPECT_EQ(drives[0].rootFolder, (folder.path() / "GARMIN").string());
    EXPECT_TRUE(drives[0].isReady);
    EXPECT_GT(drives[0].totalSize, 0U);
    EXPECT_GE(drives[0].totalSize, drives[0].freeSpace);
    EXPECT_GE(drives[0].freeSpace, drives[0].availableSpace);
    EXPECT_EQ(drives[1].volumeName, "missing");
    EXPECT_FALSE(drives[1].isReady);

    std::filesystem::create_directory(folder.path() / "missing");
    EXPECT_TRUE(host.drives()[1].isReady) << "plugged in later";
}

class StoppedHost : public SystemHost {
public:
    bool stopRequested() override { return true; }
};

TEST(SystemHost, APauseEndsWhenAStopIsRequested) {
    StoppedHost host;
    host.pause(1e6);  // the test's own time limit would tell
}

TEST(SystemHost, PatienceEndsTheMemberThatWaitsInVain) {
    SystemHost host;
    host.memberBegins();
    host.waitedForBytes(1e6);
    EXPECT_FALSE(host.stopRequested()) << "there is none at first";
    host.memberEnds();

    host.setPatience(30);
    host.memberBegins();
    host.waitedForBytes(29);
    host.bytesCame();
    host.waitedForBytes(29);
    EXPECT_FALSE(host.stopRequested()) << "it counts from the last byte";
    host.memberBegins();  // in a handler of the other
    host.waitedForBytes(1);
    host.memberEnds();
    EXPECT_TRUE(host.stopRequested() && host.patienceEnded());
    host.bytesCame();
    EXPECT_TRUE(host.stopRequested()) << "until the member has ended";
    host.memberEnds();
    EXPECT_FALSE(host.stopRequested() || host.patienceEnded());
    host.waitedForBytes(29);
    host.memberBegins();
    host.waitedForBytes(29);
    EXPECT_FALSE(host.stopRequested()) << "nothing is left of the last one";
}

TEST(SystemErrorText, IsShortAndTrimmed) {
    for (const std::int32_t code : {1, 2, 5, 13, 87}) {
        const std::string text = systemErrorText(code);
        EXPECT_FALSE(text.empty()) << code;
        EXPECT_LE(text.size(), 255U);
        EXPECT_NE(text.front(), ' ');
        EXPECT_NE(text.back(), ' ');
    }
    EXPECT_NE(systemErrorText(2), systemErrorText(5));
}

}  // namespace
}  // namespace marlune
