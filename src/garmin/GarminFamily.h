// What the Garmin families have in common: the unit's capabilities decide what it is asked for and
// how upload files are read.
#pragma once

#include <string>

#include "family/Family.h"
#include "garmin/GarminUnit.h"

namespace marlune {

class GarminFamily : public Family {
public:
    // The unit is the control's, whichever way it was reached last.
    GarminFamily(ControlServices& services, GarminUnit& unit) : Family(services), unit_(unit) {}

    [[nodiscard]] std::string getProtocoles() const override;
    [[nodiscard]] bool offers(Member member) const override;
    [[nodiscard]] UploadFormat uploadFormat() const override;
    void forget() override { unit_ = {}; }

protected:
    [[nodiscard]] GarminUnit& unit() const { return unit_; }

    // The unit sends its position again and again; over which link, only the family knows.
    bool streams_ = false;

private:
    GarminUnit& unit_;
};

}  // namespace marlune
