#include "UsbRun.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <system_error>

#include "Signals.h"
#include "receivers/garmin/GarminUsbReceiver.h"
#include "receivers/usb/EmulatedUsbBus.h"

namespace marlune::receivers {
namespace {

// What umockdev-wrapper does for the program alone: this process has no part in the mock.
void setEnvironment(const EmulatedUsbBus& bus) {
    const char* before = std::getenv("LD_PRELOAD");
    const std::string preload = "libumockdev-preload.so.0";
    ::setenv("LD_PRELOAD", (before == nullptr ? preload : preload + ":" + before).c_str(), 1);
    ::setenv("UMOCKDEV_DIR", bus.folder().c_str(), 1);
}

class Child {
public:
    explicit Child(std::vector<std::string> command) {
        std::vector<char*> argv;
        argv.reserve(command.size() + 1);
        for (std::string& word : command) {
            argv.push_back(word.data());
        }
        argv.push_back(nullptr);
        // The program gets the signals that this process keeps for itself.
        posix_spawnattr_t attributes;
        posix_spawnattr_init(&attributes);
        sigset_t none;
        ::sigemptyset(&none);
        posix_spawnattr_setsigmask(&attributes, &none);
        sigset_t ignored;
        ::sigemptyset(&ignored);
        ::sigaddset(&ignored, SIGPIPE);
        posix_spawnattr_setsigdefault(&attributes, &ignored);
        posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
        const int error = posix_spawnp(&id_, argv[0], nullptr, &attributes, argv.data(), environ);
        posix_spawnattr_destroy(&attributes);
        if (error != 0) {
            throw std::system_error(error, std::system_category(), command.front());
        }
    }

    void signal(int number) const { ::kill(id_, number); }

    // The program's status once it has ended.
    [[nodiscard]] std::optional<int> ended() const {
        constexpr int kSignalled = 128;
        int status = 0;
        if (::waitpid(id_, &status, WNOHANG) != id_) {
            return std::nullopt;
        }
        return WIFSIGNALED(status) ? kSignalled + WTERMSIG(status) : WEXITSTATUS(status);
    }

private:
    pid_t id_ = 0;
};

void print(EmulatedUsbBus& bus, const ReceiverFunction& function) {
    bus.locked([&] {
        for (const std::string& line : function.receiver().lines()) {
            std::cout << line << "\n";
        }
    });
    std::cout.flush();
}

// Waits until the program ends, or without one until this process is told to.
int waitForEnd(EmulatedUsbBus& bus, const ReceiverFunction& function,
               const std::optional<Child>& child, const sigset_t& signals) {
    for (;;) {
        int signal = 0;
        ::sigwait(&signals, &signal);
        if (signal == SIGUSR1) {
            print(bus, function);
        } else if (signal == SIGCHLD && child) {
            if (const auto status = child->ended()) {
                return *status;
            }
        } else if ((signal == SIGTERM || signal == SIGHUP) && child) {
            child->signal(signal);
        } else if (signal != SIGCHLD && !child) {
            return 0;
        }
        // A terminal gives SIGINT to the program as well: it decides.
    }
}

}  // namespace

int runOnUsb(const UsbChoices& choices) {
    const sigset_t signals = blockSignals({SIGUSR1, SIGCHLD});
    ReceiverFunction function(garmin::makeGarminUsbReceiver(choices.receiver), choices.habit);
    EmulatedUsbBus bus(function, {});
    std::optional<Child> child;
    if (choices.command.empty()) {
        std::cout << bus.folder() << std::endl;
    } else {
        setEnvironment(bus);
        child.emplace(choices.command);
    }
    const int status = waitForEnd(bus, function, child, signals);
    bus.locked([&] { function.end(); });
    if (choices.print) {
        print(bus, function);
    }
    for (const std::string& complaint : function.receiver().complaints()) {
        std::cerr << "marlune-receiver: " << complaint << "\n";
    }
    return status;
}

}  // namespace marlune::receivers
