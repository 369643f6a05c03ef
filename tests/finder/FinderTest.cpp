// Ports, and the virtual receivers that stand behind two of them.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>

#include "finder/Finder.h"
#include "marlune/SystemHost.h"
#include "receivers/BuiltIn.h"
#include "support/TempFolder.h"

namespace marlune::finder {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class QuietHost : public SystemHost {
public:
    void messageBox(const std::string& /*text*/, BoxIcon /*icon*/) override {}
};

PortEntry entryOf(const std::vector<PortEntry>& ports, const std::string& path) {
    const auto found = std::find_if(ports.begin(), ports.end(),
                                    [&](const PortEntry& port) { return port.path == path; });
    return found == ports.end() ? PortEntry{} : *found;
}

TEST(Finder, FindsReceiversOfSeveralFamilies) {
    const receivers::BuiltIn garmin("garmin");
    const receivers::BuiltIn magellan("magellan");
    QuietHost host;
    host.bindPort(7, garmin.path());
    host.bindPort(8, magellan.path());
    const std::vector<PortEntry> ports = listPorts(host);
    const PortEntry first = entryOf(ports, garmin.path());
    const PortEntry second = entryOf(ports, magellan.path());
    EXPECT_EQ(first.number, 7);
    EXPECT_TRUE(first.mayOpen);
    std::vector<std::string> lines;
    std::vector<std::string> asked;
    Finder finder(host);
    finder.onAsk = [&](const PortEntry& /*port*/, const std::string& mark) {
        asked.push_back(mark);
    };
    for (const Found& found : finder.find({first, second})) {
        lines.push_back(found.options());
        EXPECT_THAT(found.identity, HasSubstr("GPSId: "));
    }
    EXPECT_THAT(lines, ElementsAre("--port " + garmin.path() + " --mark GRM",
                                   "--port " + magellan.path() + " --mark MGN"));
    EXPECT_THAT(asked, ElementsAre("GRM", "GRM", "MGN"));
}

TEST(Finder, LeavesAloneWhatIsInUseOrEmpty) {
    const receivers::BuiltIn receiver("garmin");
    QuietHost host;
    Finder finder(host);
    std::vector<std::string> reasons;
    finder.onSkip = [&](const PortEntry& /*port*/, const std::string& reason) {
        reasons.push_back(reason);
    };
    PortEntry port;
    port.path = receiver.path();
    port.pluggedIn = false;
    EXPECT_FALSE(finder.ask(port));
    port.pluggedIn = true;
    port.mayOpen = false;
    EXPECT_FALSE(finder.ask(port));
    port.mayOpen = true;
    // A file stands in for the device: this process, being the receiver, does not count on a pty.
    const TempFolder folder;
    const std::string file = folder.write("device", "");
    EXPECT_EQ(holderOf(file), "");
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    port.holder = holderOf(file);
    ::close(descriptor);
    EXPECT_THAT(port.holder, HasSubstr("(" + std::to_string(::getpid()) + ")"));
    EXPECT_FALSE(finder.ask(port));
    EXPECT_THAT(reasons, ElementsAre("nothing is plugged in", "this user may not open it",
                                     "in use by " + port.holder));
}

TEST(Finder, OffersVirtualReceivers) {
    const std::vector<PortEntry> ports = virtualPorts();
    QuietHost host;
    const auto found = Finder(host).ask(entryOf(ports, "virtual:etrex"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->options(), "--port virtual:etrex --mark GRM");
}

}  // namespace
}  // namespace marlune::finder
