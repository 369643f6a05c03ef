#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "garmin/UploadFiles.h"
#include "support/FakeHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

// The system lets root open every file, so root becomes another user for a while.
class OrdinaryUser {
public:
    OrdinaryUser() {
        constexpr uid_t kNobody = 65534;
        left_ = geteuid() == 0 && seteuid(kNobody) == 0;
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (left_) {
            (void)!seteuid(0);
        }
    }

private:
    bool left_ = false;
};

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
