// What the program makes of texts that are not its own.
#include <gtest/gtest.h>

#include "cli/Output.h"

namespace marlune::cli {
namespace {

TEST(Visible, LeavesNoControlCharacterToATerminal) {
    EXPECT_EQ(visible("Évian \x1B[2J\r\x7F \xC2\x9B"
                      "1A\n\xC2\xA0-"),
              "Évian ^[[2J^M^? ?1A\n\xC2\xA0-");
}

}  // namespace
}  // namespace marlune::cli
