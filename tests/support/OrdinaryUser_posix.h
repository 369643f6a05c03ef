#pragma once

#include <unistd.h>

namespace marlune {

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

}  // namespace marlune
