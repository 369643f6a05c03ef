#include <gmock/gmock.h>

#include <stdexcept>

#include "receivers/BuiltIn.h"
#include "receivers/HostEnd.h"

namespace marlune::receivers {
namespace {

TEST(BuiltIn, AnswersOnItsPathUntilItEnds) {
    auto receiver = std::make_unique<BuiltIn>("GRM");
    EXPECT_FALSE(receiver->lines().empty());
    const HostEnd host(receiver->path());
    // The abort command and its acknowledgement.
    host.write(std::string("\x10\x0A\x02\x00\x00\xF4\x10\x03", 8));
    EXPECT_EQ(host.read(8), std::string("\x10\x06\x02\x0A\x00\xEE\x10\x03", 8));
    receiver.reset();
    EXPECT_EQ(host.read(1), "") << "the port has gone";
}

TEST(BuiltIn, PlaysTheUnitThatIsNamed) {
    const BuiltIn receiver("garmin", "gps45");
    EXPECT_EQ(receiver.lines().front().substr(0, 8), "W;CHAMX;");
    EXPECT_THROW(BuiltIn("garmin", "nonesuch"), std::invalid_argument);
    EXPECT_THROW(BuiltIn("nonesuch"), std::invalid_argument);
}

}  // namespace
}  // namespace marlune::receivers
