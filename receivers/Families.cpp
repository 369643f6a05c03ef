#include "receivers/Families.h"

#include <algorithm>
#include <stdexcept>

namespace marlune::receivers {

const std::vector<Family>& receiverFamilies() {
    static const std::vector<Family> kFamilies = {};
    return kFamilies;
}

const Family& receiverFamily(std::string_view nameOrCode) {
    const std::vector<Family>& families = receiverFamilies();
    const auto found = std::find_if(families.begin(), families.end(), [=](const Family& each) {
        return each.name == nameOrCode || (!each.code.empty() && each.code == nameOrCode);
    });
    if (found != families.end()) {
        return *found;
    }
    std::string names;
    for (const Family& each : families) {
        names += (names.empty() ? "" : ", ") + std::string(each.name);
    }
    throw std::invalid_argument("no family of receivers is called \"" + std::string(nameOrCode) +
                                "\"; there are: " + names);
}

}  // namespace marlune::receivers
