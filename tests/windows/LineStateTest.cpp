// What is handed to a serial driver, judged as the system judges it: Wine's own driver takes
// everything.
#include <gtest/gtest.h>

#include "serial/LineState_windows.h"

namespace marlune {
namespace {

// The driver: the state that it reports, and the one that it was given.
DCB driver;
bool isSilent = false;

BOOL WINAPI reportState(HANDLE /*port*/, DCB* state) {
    if (isSilent) {
        SetLastError(ERROR_INVALID_FUNCTION);
        return FALSE;
    }
    *state = driver;
    return TRUE;
}

// Refuses what SetCommState is documented to refuse.
BOOL WINAPI takeState(HANDLE /*port*/, DCB* state) {
    const bool halfStop = state->StopBits == ONE5STOPBITS && state->ByteSize != 5;
    const bool twoStop = state->StopBits == TWOSTOPBITS && state->ByteSize == 5;
    if (state->DCBlength != sizeof(DCB) || state->fBinary == FALSE ||
        state->XonChar == state->XoffChar || state->ByteSize < 5 || state->ByteSize > 8 ||
        halfStop || twoStop) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    driver = *state;
    return TRUE;
}

class LineStateTest : public testing::Test {
protected:
    void SetUp() override {
        driver = {};
        driver.DCBlength = sizeof driver;
        isSilent = false;
    }
    static DWORD set(const char* settings) {
        return setLine(nullptr, settings, {reportState, takeState});
    }
};

constexpr char kLine[] = "baud=9600 parity=n data=8 stop=1";

TEST_F(LineStateTest, ADriverThatReportsNothingButZerosIsSet) {
    ASSERT_EQ(set(kLine), 0U);
    EXPECT_EQ(driver.BaudRate, 9600U);
    EXPECT_EQ(driver.ByteSize, 8);
    EXPECT_EQ(driver.Parity, NOPARITY);
    EXPECT_EQ(driver.StopBits, ONESTOPBIT);
    EXPECT_EQ(driver.fDtrControl, static_cast<DWORD>(DTR_CONTROL_ENABLE));
    EXPECT_EQ(driver.fRtsControl, static_cast<DWORD>(RTS_CONTROL_ENABLE));
}

TEST_F(LineStateTest, WhatAnotherProgramLeftDoesNotSpoilADialogue) {
    driver.fOutxCtsFlow = driver.fOutxDsrFlow = driver.fDsrSensitivity = TRUE;
    driver.fOutX = driver.fInX = driver.fNull = driver.fErrorChar = driver.fParity = TRUE;
    driver.fAbortOnError = TRUE;
    driver.fRtsControl = RTS_CONTROL_HANDSHAKE;
    driver.XonChar = 17;
    driver.XoffChar = 19;
    driver.XonLim = 77;
    ASSERT_EQ(set("baud=4800 parity=n data=8 stop=2"), 0U);
    EXPECT_EQ(driver.fOutxCtsFlow | driver.fOutxDsrFlow | driver.fDsrSensitivity, 0U);
    EXPECT_EQ(driver.fOutX | driver.fInX | driver.fNull | driver.fErrorChar | driver.fParity, 0U);
    EXPECT_EQ(driver.fAbortOnError, 0U);
    EXPECT_EQ(driver.fRtsControl, static_cast<DWORD>(RTS_CONTROL_ENABLE));
    EXPECT_EQ(driver.StopBits, TWOSTOPBITS);
    EXPECT_EQ(driver.XonLim, 77) << "what is not ours stays";
}

TEST_F(LineStateTest, TheSettingsTextHasTheLastWord) {
    ASSERT_EQ(set("baud=9600 parity=n data=8 stop=1 dtr=off rts=off"), 0U);
    EXPECT_EQ(driver.fDtrControl, static_cast<DWORD>(DTR_CONTROL_DISABLE));
    EXPECT_EQ(driver.fRtsControl, static_cast<DWORD>(RTS_CONTROL_DISABLE));
}

TEST_F(LineStateTest, AFailureIsTheSystemsError) {
    EXPECT_NE(set("nonsense"), 0U);
    EXPECT_EQ(set("baud=9600 parity=n data=5 stop=2"), DWORD{ERROR_INVALID_PARAMETER});
    isSilent = true;
    EXPECT_EQ(set(kLine), DWORD{ERROR_INVALID_FUNCTION});
}

}  // namespace
}  // namespace marlune
