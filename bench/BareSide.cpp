#include "BareSide.h"

#include <fcntl.h>
#include <unistd.h>

#include <stdexcept>
#include <vector>

namespace marlune::bench {

BareSide::BareSide(const std::string& type, std::uint32_t records)
    : device_({nullptr, [=] { return Exchange::download(type, records); }}),
      exchange_(Exchange::download(type, records)),
      line_(::open(device_.path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (line_ < 0) {
        throw std::runtime_error("no line");
    }
}

BareSide::~BareSide() {
    ::close(line_);
}

void BareSide::run() {
    std::vector<std::uint8_t> buffer(1024);
    for (std::size_t i = 0; i < exchange_.size(); ++i) {
        const Exchange::Turn turn = exchange_.turn(i);
        if (!writeAll(line_, std::span(buffer).first(turn.heard)) ||
            !readAll(line_, std::span(buffer).first(turn.said.size()))) {
            throw std::runtime_error("the line ended");
        }
    }
}

}  // namespace marlune::bench
