// The control's events, each written with its parameters under their declared names.
#pragma once

#include "cli/host/JsonWriter.h"
#include "control/Surface.h"

namespace marlune::cli {

// Whoever acts inside the handlers.
class EventListener {
public:
    EventListener() = default;
    EventListener(const EventListener&) = delete;
    EventListener& operator=(const EventListener&) = delete;
    virtual ~EventListener() = default;

    // Before the event is written.
    virtual void eventBegins() = 0;
    // After it; the handler ends with this.
    virtual void eventWritten(const surface::Event& event) = 0;
};

class EventWriter : public NamedEvents {
public:
    EventWriter(JsonWriter& writer, EventListener& listener)
        : writer_(writer), listener_(listener) {}

private:
    void raise(const surface::Event& event, std::span<const surface::EventValue> values) override;

    JsonWriter& writer_;
    EventListener& listener_;
};

}  // namespace marlune::cli
