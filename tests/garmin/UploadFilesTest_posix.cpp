#include <gtest/gtest.h>
#include <sys/resource.h>

#include <string>
#include <vector>

#include "garmin/UploadFiles.h"
#include "support/FakeHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

// Nothing can be opened while this lives. Permissions would not do: the tests may run as root.
class NoMoreFiles {
public:
    NoMoreFiles() {
        (void)getrlimit(RLIMIT_NOFILE, &before_);
        rlimit none = before_;
        none.rlim_cur = 0;
        (void)setrlimit(RLIMIT_NOFILE, &none);
    }
    NoMoreFiles(const NoMoreFiles&) = delete;
    NoMoreFiles& operator=(const NoMoreFiles&) = delete;
    ~NoMoreFiles() { (void)setrlimit(RLIMIT_NOFILE, &before_); }

private:
    rlimit before_{};
};

TEST(UploadFilesPosixTest, AFileThatDoesNotOpenEndsTheReader) {
    const TempFolder folder;
    const std::string file = folder.write("file", "W;A;1;2;;3;4;5\n");
    FakeHost host;
    std::vector<Waypoint> waypoints;
    std::vector<Route> routes;
    {
        const NoMoreFiles limit;
        EXPECT_FALSE(readWaypointFile(host, file, {}, waypoints));
        EXPECT_FALSE(readRouteFile(host, file, {}, routes)) << "not an empty list of routes";
    }
    EXPECT_TRUE(readWaypointFile(host, file, {}, waypoints));
}

}  // namespace
}  // namespace marlune
