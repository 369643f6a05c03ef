// The three readers of upload files. Input: a file, whose size chooses the format.
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "garmin/UploadFiles.h"
#include "support/FakeHost.h"
#include "support/TempFolder.h"

namespace {

using namespace marlune;

const UploadFormat kFormats[] = {
    {"GRM", "D108", "D106", "A301", "D310", "."},
    {"GRM", "D103", "", "A300", "", ","},
    {"MGN", "", "", "", "", ""},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const TempFolder folder;
    FakeHost host;
    const std::string path =
        folder.write("upload.txt", {reinterpret_cast<const char*>(bytes), size});
    const UploadFormat& format = kFormats[size % std::size(kFormats)];
    std::vector<Waypoint> waypoints;
    std::vector<Route> routes;
    std::vector<TrackItem> items;
    (void)readWaypointFile(host, path, format, waypoints);
    (void)readRouteFile(host, path, format, routes);
    (void)readTrackFile(host, path, format, items);
    return 0;
}
