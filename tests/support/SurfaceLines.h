// The control's surface as lines, to be laid beside what says the same elsewhere:
// "16 method SendWaypts(Fic string&) variant".
#pragma once

#include <string>
#include <vector>

#include "control/Surface.h"

namespace marlune {

inline std::string typeText(surface::Type type) {
    switch (type) {
        case surface::Type::none:
            return "void";
        case surface::Type::boolean:
            return "boolean";
        case surface::Type::integer:
            return "short";
        case surface::Type::number:
            return "double";
        case surface::Type::text:
            return "string";
        case surface::Type::textReference:
            return "string&";
        case surface::Type::port:
            return "numPort";
        case surface::Type::variant:
            return "variant";
    }
    return {};
}

inline std::string surfaceLine(int id, surface::Kind kind, std::string_view name,
                               const surface::Parameters& parameters, surface::Type result) {
    std::string list;
    for (const surface::Parameter& parameter : parameters) {
        list += list.empty() ? "" : ", ";
        // A property's value has no name of its own.
        list += kind == surface::Kind::propertyPut ? "" : std::string(parameter.name) + " ";
        list += typeText(parameter.type);
    }
    const char* kinds[] = {"method", "get", "put"};
    return std::to_string(id) + " " + kinds[static_cast<int>(kind)] + " " + std::string(name) +
           "(" + list + ") " + typeText(result);
}

inline std::vector<std::string> memberLines() {
    std::vector<std::string> lines;
    for (const surface::Member& member : surface::kMembers) {
        lines.push_back(
            surfaceLine(member.id, member.kind, member.name, member.parameters, member.result));
    }
    return lines;
}

inline std::vector<std::string> eventLines() {
    std::vector<std::string> lines;
    for (const surface::Event& event : surface::kEvents) {
        lines.push_back(surfaceLine(event.id, surface::Kind::method, event.name, event.parameters,
                                    surface::Type::none));
    }
    return lines;
}

}  // namespace marlune
