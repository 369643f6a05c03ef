// A virtual receiver inside the running program, on a pty with a thread of its own: what the
// command line's "--port virtual[:UNIT]" talks to. Linux.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "receivers/Families.h"

namespace marlune::receivers {

class PtyRunner;

class BuiltIn {
public:
    // Starts a receiver of that family, by its name ("garmin") or the control's code for it
    // ("GRM"), playing one of the family's named units; empty for its first. Throws
    // std::invalid_argument for names that do not exist and std::system_error when there is no pty.
    explicit BuiltIn(std::string_view family, const std::string& unit = {});
    // The same with every choice; paced makes bytes take the time of the receiver's speed.
    BuiltIn(std::string_view family, const ReceiverOptions& options, bool paced);
    BuiltIn(const BuiltIn&) = delete;
    BuiltIn& operator=(const BuiltIn&) = delete;
    // Ends the receiver; whoever still has the path open sees its port disappear.
    ~BuiltIn();

    // What to open as the serial port: "/dev/pts/4".
    [[nodiscard]] const std::string& path() const;

    // What the receiver holds now, and what it wonders about; see VirtualReceiver.
    [[nodiscard]] std::vector<std::string> lines() const;
    [[nodiscard]] std::vector<std::string> complaints() const;

private:
    std::unique_ptr<PtyRunner> runner_;
};

}  // namespace marlune::receivers
