// The control's events as automation raises them.
#pragma once

#include <windows.h>
// After windows.h:
#include <oaidl.h>

#include "control/Surface.h"

namespace marlune::activex {

class ConnectionPoint;

class EventSource : public NamedEvents {
public:
    // sinks outlives the event source.
    explicit EventSource(ConnectionPoint& sinks) : sinks_(sinks) {}

private:
    void raise(const surface::Event& event, std::span<const surface::EventValue> values) override;

    ConnectionPoint& sinks_;
};

}  // namespace marlune::activex
