// The control's events as automation raises them.
#pragma once

#include <windows.h>
// After windows.h:
#include <oaidl.h>

#include "control/NamedEvents.h"

namespace marlune::activex {

class ConnectionPoint;

class EventSource : public NamedEvents {
public:
    // sinks outlives the event source.
    explicit EventSource(ConnectionPoint& sinks) : sinks_(sinks) {}

private:
    void raise(std::string_view name, std::initializer_list<Parameter> parameters) override;

    ConnectionPoint& sinks_;
};

}  // namespace marlune::activex
