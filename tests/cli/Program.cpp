#include "cli/Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace marlune::cli {
namespace {

int require(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(errno, std::system_category(), what);
    }
    return result;
}

void closeOnce(int& descriptor) {
    if (descriptor >= 0) {
        close(std::exchange(descriptor, -1));
    }
}

}  // namespace

Program::Program(std::vector<std::string> arguments) {
    std::signal(SIGPIPE, SIG_IGN);
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    require(pipe2(input.data(), O_CLOEXEC), "pipe");
    require(pipe2(output.data(), O_CLOEXEC), "pipe");
    errors_ = require(memfd_create("errors", MFD_CLOEXEC), "memfd_create");
    input_ = input[1];
    output_ = output[0];

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors_, STDERR_FILENO);
    // The child starts with the signals as a shell gives them.
    setenv("LC_ALL", "C", 1);  // the program speaks the language of its user
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t plain;
    sigfillset(&plain);
    posix_spawnattr_setsigdefault(&attributes, &plain);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    arguments.insert(arguments.begin(), MARLUNE_PROGRAM);
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    const int error =
        posix_spawn(&process_, MARLUNE_PROGRAM, &actions, &attributes, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    close(input[0]);
    close(output[1]);
    if (error != 0) {
        throw std::system_error(error, std::system_category(), MARLUNE_PROGRAM);
    }
}

Program::~Program() {
    closeInput();
    closeOutput();
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    closeOnce(errors_);
}

void Program::write(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t taken = ::write(input_, text.data(), text.size());
        if (taken < 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(taken));
    }
}

void Program::closeInput() {
    closeOnce(input_);
}

void Program::closeOutput() {
    closeOnce(output_);
}

bool Program::readMore() {
    pollfd end{output_, POLLIN, 0};
    if (poll(&end, 1, kPatienceMilliseconds) <= 0) {
        throw std::runtime_error("the program says nothing");
    }
    std::array<char, 65536> block{};
    const ssize_t count = read(output_, block.data(), block.size());
    if (count > 0) {
        unread_.append(block.data(), static_cast<std::size_t>(count));
    }
    return count > 0;
}

std::optional<std::string> Program::line() {
    std::size_t end = 0;
    while ((end = unread_.find('\n')) == std::string::npos) {
        if (!readMore()) {
            return std::nullopt;
        }
    }
    std::string line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    return line;
}

std::string Program::linesUpTo(std::string_view text) {
    std::string lines;
    while (auto next = line()) {
        lines += *next + "\n";
        if (next->find(text) != std::string::npos) {
            break;
        }
    }
    return lines;
}

std::string Program::rest() {
    while (readMore()) {
    }
    return std::exchange(unread_, {});
}

void Program::signal(int number) const {
    kill(process_, number);
}

int Program::wait() {
    // A descriptor of the process becomes readable when it ends.
    const int handle =
        require(static_cast<int>(syscall(SYS_pidfd_open, process_, 0)), "pidfd_open");
    pollfd end{handle, POLLIN, 0};
    const bool ended = poll(&end, 1, kPatienceMilliseconds) > 0;
    close(handle);
    if (!ended) {
        throw std::runtime_error("the program does not end");
    }
    int status = 0;
    waitpid(std::exchange(process_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

std::string Program::errors() const {
    std::ifstream text("/proc/self/fd/" + std::to_string(errors_));
    return {std::istreambuf_iterator<char>(text), {}};
}

std::string outputOf(std::vector<std::string> arguments) {
    Program program(std::move(arguments));
    std::string printed = program.rest();
    EXPECT_EQ(program.wait(), 0) << program.errors();
    return printed;
}

}  // namespace marlune::cli
