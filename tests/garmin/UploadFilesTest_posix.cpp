#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "garmin/UploadFiles.h"
#include "support/FakeHost.h"
#include "support/OrdinaryUser_posix.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

TEST(UploadFilesPosixTest, AFileThatDoesNotOpenEndsTheReader) {
    using std::filesystem::perms;
    const TempFolder folder;
    const std::string file = folder.write("file", "W;A;1;2;;3;4;5\n");
    std::filesystem::permissions(folder.path(), perms::all);
    std::filesystem::permissions(file, perms::none);
    FakeHost host;
    std::vector<Waypoint> waypoints;
    std::vector<Route> routes;
    {
        const OrdinaryUser user;
        EXPECT_FALSE(readWaypointFile(host, file, {}, waypoints));
        EXPECT_FALSE(readRouteFile(host, file, {}, routes)) << "not an empty list of routes";
    }
    EXPECT_EQ(host.boxTexts(), (std::vector<std::string>{"critical: Permission denied",
                                                         "critical: Permission denied"}));
    std::filesystem::permissions(file, perms::owner_read);
    EXPECT_TRUE(readWaypointFile(host, file, {}, waypoints));
}

}  // namespace
}  // namespace marlune
