#include "cli/host/EventWriter.h"

namespace marlune::cli {

void EventWriter::raise(const surface::Event& event, std::span<const surface::EventValue> values) {
    listener_.eventBegins();
    writer_.event(event, values);
    listener_.eventWritten(event);
}

}  // namespace marlune::cli
