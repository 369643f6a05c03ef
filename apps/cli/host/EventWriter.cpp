#include "cli/host/EventWriter.h"

namespace marlune::cli {

void EventWriter::raise(std::string_view name, std::initializer_list<Parameter> parameters) {
    listener_.eventBegins();
    writer_.event(name, parameters);
    listener_.eventWritten(name);
}

}  // namespace marlune::cli
