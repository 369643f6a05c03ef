// The program under test as a child process: lines in, lines out, its signals and its end.
//
// Waits are in poll() for what the program does, and never longer than kPatience: that bound is
// only met by a test that fails.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marlune::cli {

class Program {
public:
    static constexpr int kPatienceMilliseconds = 20000;

    // Starts marlune with these arguments. Throws std::system_error.
    explicit Program(std::vector<std::string> arguments);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    // Kills the program if it still runs.
    ~Program();

    // Standard input. A reader that has gone is ignored.
    void write(std::string_view text) const;
    void closeInput();

    // The next line of standard output without its end; nothing at its end.
    std::optional<std::string> line();
    // Lines up to and including one that contains the text, joined by line ends.
    std::string linesUpTo(std::string_view text);
    // All the rest.
    std::string rest();
    // Stops reading standard output for good.
    void closeOutput();

    void signal(int number) const;
    // The exit status, or minus the signal that ended the program.
    int wait();
    // Standard error; complete once wait() has returned.
    [[nodiscard]] std::string errors() const;

private:
    bool readMore();

    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    int errors_ = -1;
    std::string unread_;
};

// What marlune prints with these arguments; it must end with status 0.
std::string outputOf(std::vector<std::string> arguments);

}  // namespace marlune::cli
