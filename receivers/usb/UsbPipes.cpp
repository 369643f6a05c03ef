#include "receivers/usb/UsbPipes.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace marlune::receivers {

int UsbPipes::submit(Request request, double now) {
    if (gone_) {
        return ENODEV;
    }
    const std::uint8_t endpoint = request.endpoint;
    if (faults.stall == endpoint) {
        faults.stall.reset();
        halted_[endpoint] = true;
    }
    if (halted_[endpoint]) {
        finish(std::move(request), -EPIPE);
        return 0;
    }
    if (faults.babble == endpoint) {
        faults.babble.reset();
        finish(std::move(request), -EOVERFLOW);
        return 0;
    }
    switch (endpoint) {
        case kBulkOut:
            if (faults.refuseWrites) {
                waiting_[endpoint].push_back(std::move(request));
            } else {
                write(std::move(request), now);
            }
            return 0;
        case kBulkIn:
        case kInterruptIn:
            waiting_[endpoint].push_back(std::move(request));
            serve(endpoint);
            return 0;
        default:
            return ENOENT;
    }
}

void UsbPipes::write(Request request, double now) {
    message_.insert(message_.end(), request.bytes.begin(), request.bytes.end());
    const bool shortPacket = request.bytes.size() % sizes_.bulk != 0 || request.bytes.empty();
    finish(std::move(request), 0);
    if (shortPacket) {
        const auto message = std::exchange(message_, {});
        function_.hostWrote(message, now);
        collect();
    }
}

void UsbPipes::elapse(double now) {
    if (!gone_) {
        function_.elapse(now);
        collect();
    }
}

void UsbPipes::collect() {
    for (UsbMessage& message : function_.takeOutput()) {
        if (faults.lateMessages > 0) {
            --faults.lateMessages;
            late_.push_back(std::move(message));
        } else {
            queue(message);
        }
    }
    serve(kBulkIn);
    serve(kInterruptIn);
}

void UsbPipes::queue(const UsbMessage& message) {
    const std::uint8_t endpoint = message.pipe == UsbPipe::bulkIn ? kBulkIn : kInterruptIn;
    const std::size_t size = packetSize(endpoint);
    std::size_t at = 0;
    do {
        const std::size_t end = std::min(at + size, message.bytes.size());
        packets_[endpoint].emplace_back(message.bytes.begin() + static_cast<std::ptrdiff_t>(at),
                                        message.bytes.begin() + static_cast<std::ptrdiff_t>(end));
        at = end;
    } while (at < message.bytes.size());
}

void UsbPipes::serve(std::uint8_t endpoint) {
    auto& requests = waiting_[endpoint];
    while (!requests.empty() && fill(requests.front(), packets_[endpoint])) {
        Request request = std::move(requests.front());
        requests.pop_front();
        const int status = request.status;
        finish(std::move(request), status);
    }
}

// True when the request is done.
bool UsbPipes::fill(Request& request, std::deque<Packet>& packets) const {
    while (!packets.empty()) {
        const Packet packet = std::move(packets.front());
        packets.pop_front();
        if (packet.size() > request.wanted - request.bytes.size()) {
            request.status = -EOVERFLOW;
            return true;
        }
        request.bytes.insert(request.bytes.end(), packet.begin(), packet.end());
        if (packet.size() < packetSize(request.endpoint) ||
            request.bytes.size() == request.wanted) {
            return true;
        }
    }
    return false;
}

void UsbPipes::finish(Request request, int status) {
    request.status = status;
    done_.push_back(std::move(request));
}

bool UsbPipes::discard(std::uint64_t id) {
    for (auto& [endpoint, requests] : waiting_) {
        const auto found = std::find_if(requests.begin(), requests.end(),
                                        [&](const Request& request) { return request.id == id; });
        if (found == requests.end()) {
            continue;
        }
        Request request = std::move(*found);
        requests.erase(found);
        if (endpoint == kBulkOut) {
            request.bytes.clear();
        }
        finish(std::move(request), -ENOENT);
        for (const UsbMessage& message : std::exchange(late_, {})) {
            queue(message);
        }
        serve(kBulkIn);
        serve(kInterruptIn);
        return true;
    }
    return false;
}

std::optional<UsbPipes::Request> UsbPipes::reap() {
    if (done_.empty()) {
        return std::nullopt;
    }
    Request request = std::move(done_.front());
    done_.pop_front();
    return request;
}

void UsbPipes::unplug() {
    gone_ = true;
    for (auto& [endpoint, requests] : waiting_) {
        for (Request& request : requests) {
            if (endpoint == kBulkOut) {
                request.bytes.clear();
            }
            finish(std::move(request), -ESHUTDOWN);
        }
        requests.clear();
    }
}

void UsbPipes::clearHalt(std::uint8_t endpoint) {
    halted_[endpoint] = false;
}

}  // namespace marlune::receivers
