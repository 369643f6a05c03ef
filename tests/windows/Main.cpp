// Runs the tests in an apartment of COM, with the control registered, and forgotten at the
// end.
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h:
#include <ole2.h>

#include "Library.h"

namespace marlune {
namespace {

class RegisteredControl : public testing::Environment {
public:
    void SetUp() override {
        ASSERT_HRESULT_SUCCEEDED(OleInitialize(nullptr));
        ASSERT_HRESULT_SUCCEEDED(Library().registerServer());
    }
    void TearDown() override {
        EXPECT_HRESULT_SUCCEEDED(Library().unregisterServer());
        OleUninitialize();
    }
};

}  // namespace
}  // namespace marlune

int main(int count, char** words) {
    SetProcessDPIAware();  // shown the screen as it is
    testing::InitGoogleTest(&count, words);
    testing::AddGlobalTestEnvironment(new marlune::RegisteredControl);
    return RUN_ALL_TESTS();
}
