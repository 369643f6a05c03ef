// Positions as sentences for other programs: a navigation program or a position daemon reads them
// as from a receiver of its own.
#pragma once

#include <memory>
#include <string>

#include "marlune/Records.h"

namespace marlune::receivers {
class PtyLine;
}

namespace marlune::cli {

class LiveFeed {
public:
    // Offers the sentences on a pseudo terminal that the link leads to; a link that is there is
    // replaced. Throws std::system_error.
    explicit LiveFeed(const std::string& link);
    LiveFeed(const LiveFeed&) = delete;
    LiveFeed& operator=(const LiveFeed&) = delete;
    // Removes the link.
    ~LiveFeed();

    // Says a fix. A reader that is slow or not there misses it: what is old is of no use.
    void say(const FixRecord& fix);

    // The sentences of a fix, GGA and RMC, with their line ends.
    static std::string sentences(const FixRecord& fix);

private:
    std::unique_ptr<receivers::PtyLine> line_;
};

}  // namespace marlune::cli
