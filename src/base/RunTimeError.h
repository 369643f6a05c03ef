// The control's own run-time errors: a number and a French text. Codecs and readers raise them; the
// procedure that is told to catch one catches it, and none leaves a member of the control.
#pragma once

#include <stdexcept>
#include <string>

namespace marlune {

class RunTimeError : public std::runtime_error {
public:
    // The errors' numbers are known to hosts from message boxes and the trace file.
    enum Number { overflow = 6, index = 9, typeMismatch = 13, fileNotFound = 53 };

    explicit RunTimeError(Number number);
    // An error that the system reported, with its own number and text.
    RunTimeError(int number, const std::string& text);

    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

}  // namespace marlune
