// The virtual receiver of "--port virtual", at work behind a pty of its own for the life of the
// object.
#pragma once

#include <memory>
#include <string>

namespace marlune::cli {

class BuiltInReceiver {
public:
    // A unit of the family with that protocol code; an empty name takes its first. Throws
    // std::invalid_argument, with a text for the user, when there is none of that name.
    BuiltInReceiver(const std::string& family, const std::string& unit);
    BuiltInReceiver(const BuiltInReceiver&) = delete;
    BuiltInReceiver& operator=(const BuiltInReceiver&) = delete;
    ~BuiltInReceiver();

    // The device to open.
    [[nodiscard]] const std::string& path() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace marlune::cli
