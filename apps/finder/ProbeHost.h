// The services of another host for one short question: nobody is shown anything, and what takes too
// long ends.
#pragma once

#include <chrono>
#include <string>
#include <utility>
#include <vector>

#include "marlune/Host.h"

namespace marlune::finder {

class ProbeHost : public Host {
public:
    // device: what port number 1 means.
    ProbeHost(Host& host, std::string device, double patience)
        : host_(host),
          device_(std::move(device)),
          end_(std::chrono::steady_clock::now() +
               std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                   std::chrono::duration<double>(patience))) {}

    void messageBox(const std::string& /*text*/, BoxIcon /*icon*/) override {}
    std::string chooseFile(const std::string& /*extension*/,
                           const std::string& /*folder*/) override {
        return {};
    }
    void setMousePointer(MousePointer /*pointer*/) override {}
    void processEvents() override { host_.processEvents(); }
    bool stopRequested() override {
        return std::chrono::steady_clock::now() >= end_ || host_.stopRequested();
    }
    void pause(double seconds) override {
        constexpr double kStep = 0.05;
        for (; seconds > 0 && !stopRequested(); seconds -= kStep) {
            host_.pause(seconds < kStep ? seconds : kStep);
        }
    }
    double secondsClock() override { return host_.secondsClock(); }
    double now() override { return host_.now(); }
    std::string dateText(double date) override { return host_.dateText(date); }
    char decimalSeparator() override { return '.'; }
    std::string lineBreak() override { return host_.lineBreak(); }
    std::string documentsFolder() override { return host_.documentsFolder(); }
    std::string applicationFolder() override { return host_.applicationFolder(); }
    std::string portDevice(int number) override { return number == 1 ? device_ : std::string(); }
    std::vector<Drive> drives() override { return host_.drives(); }

private:
    Host& host_;
    std::string device_;
    std::chrono::steady_clock::time_point end_;
};

}  // namespace marlune::finder
