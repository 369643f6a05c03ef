#include "cli/host/JsonWriter.h"

#include <nlohmann/json.hpp>

#include "cli/host/Details.h"

namespace marlune::cli {
namespace {

using Json = nlohmann::ordered_json;

void writeLine(Output& output, const Json& object) {
    // The control's texts are UTF-8; whatever is not must not end the session.
    std::string line = object.dump(-1, ' ', false, Json::error_handler_t::replace);
    line += '\n';
    output.writeForeign(line);
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

void addId(Json& object, const std::string& id) {
    if (!id.empty()) {
        object["id"] = Json::parse(id);
    }
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
    if (control_ != nullptr) {
        addRecord(object, event, control_->records());
    }
    writeLine(output_, object);
}

void JsonWriter::box(std::string_view text, BoxIcon icon) {
    writeLine(output_, {{"box", text}, {"icon", iconName(icon)}});
}

void JsonWriter::result(const Call& call, const surface::Result& result) {
    Json object = {{"call", call.member->name}};
    addId(object, call.id);
    object["result"] = std::visit(ToJson(), result);
    if (control_ != nullptr) {
        addReport(object, *call.member, *control_);
    }
    writeLine(output_, object);
}

void JsonWriter::error(const Fault& fault) {
    Json object = {{"error", fault.text}};
    if (!fault.call.empty() && (control_ != nullptr || !fault.id.empty())) {
        object["call"] = fault.call;
    }
    addId(object, fault.id);
    writeLine(output_, object);
}

}  // namespace marlune::cli
