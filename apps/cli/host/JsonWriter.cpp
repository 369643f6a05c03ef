#include "cli/host/JsonWriter.h"

#include <nlohmann/json.hpp>

namespace marlune::cli {
namespace {

using Json = nlohmann::ordered_json;

void writeLine(Output& output, const Json& object) {
    // The control's texts are UTF-8; whatever is not must not end the session.
    std::string line = object.dump(-1, ' ', false, Json::error_handler_t::replace);
    line += '\n';
    output.write(line);
}

const char* iconName(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::critical:
            return "critical";
        case BoxIcon::exclamation:
            return "exclamation";
        case BoxIcon::information:
            return "information";
        case BoxIcon::none:
            break;
    }
    return "none";
}

struct ToJson {
    Json operator()(std::monostate /*nothing*/) const { return nullptr; }
    Json operator()(double days) const { return days == 0 ? Json(0) : Json(days); }
    Json operator()(const auto& value) const { return value; }
};

}  // namespace

void JsonWriter::event(const surface::Event& event, std::span<const surface::EventValue> values) {
    Json object = {{"event", event.name}};
    for (std::size_t i = 0; i < values.size(); ++i) {
        object[std::string(event.parameters[i].name)] = std::visit(ToJson(), values[i]);
    }
    writeLine(output_, object);
}

void JsonWriter::box(std::string_view text, BoxIcon icon) {
    writeLine(output_, {{"box", text}, {"icon", iconName(icon)}});
}

void JsonWriter::result(std::string_view member, const surface::Result& result) {
    writeLine(output_, {{"call", member}, {"result", std::visit(ToJson(), result)}});
}

void JsonWriter::error(std::string_view text) {
    writeLine(output_, {{"error", text}});
}

}  // namespace marlune::cli
