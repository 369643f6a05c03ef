#include "cli/host/CommandParser.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace marlune::cli {
namespace {

using Json = nlohmann::ordered_json;

class BadLine : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A text of the line as a fault's text quotes it. Nobody wants it whole when it is long.
std::string quoted(const std::string& text) {
    constexpr std::size_t kLongest = 60;
    std::size_t length = std::min(text.size(), kLongest);
    while (length > 0 && length < text.size() &&
           (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) {
        --length;  // no character is cut
    }
    return "\"" + text.substr(0, length) + (length < text.size() ? "..." : "") + "\"";
}

Json parseObject(const std::string& text) {
    // Deeper than any command: refused before it is built.
    constexpr int kDeepest = 4;
    const auto watchDepth = [](int depth, Json::parse_event_t, Json&) {
        if (depth > kDeepest) {
            throw BadLine("the line is nested too deep");
        }
        return true;
    };
    try {
        Json line = Json::parse(text, watchDepth);
        if (!line.is_object()) {
            throw BadLine("the line is not a JSON object");
        }
        return line;
    } catch (const Json::parse_error& error) {
        throw BadLine("the line is not JSON (byte " + std::to_string(error.byte) + ")");
    } catch (const Json::exception&) {
        throw BadLine("the line holds a number out of range");
    }
}

const Json& field(const Json& line, const char* name) {
    const auto found = line.find(name);
    if (found == line.end()) {
        throw BadLine(std::string("\"") + name + "\" is missing");
    }
    return *found;
}

const std::string& textField(const Json& line, const char* name) {
    const Json& value = field(line, name);
    if (!value.is_string()) {
        throw BadLine(std::string("\"") + name + "\" is not a text");
    }
    return value.get_ref<const std::string&>();
}

surface::Argument argument(const Json& value, surface::Type type, const std::string& which) {
    if (type == surface::Type::text || type == surface::Type::textReference) {
        if (!value.is_string()) {
            throw BadLine(which + " is not a text");
        }
        auto text = value.get<std::string>();
        if (text.find('\0') != std::string::npos) {
            throw BadLine(which + " holds the character NUL");
        }
        return text;
    }
    if (!value.is_number_integer()) {
        throw BadLine(which + " is not an integer");
    }
    // Compared in the type that the number was read in: what is above 63 bits is unsigned.
    const bool fits = value.is_number_unsigned() ? value.get<std::uint64_t>() <= INT16_MAX
                                                 : value.get<std::int64_t>() >= INT16_MIN;
    if (!fits) {
        throw BadLine(which + " is out of range");
    }
    return value.get<std::int16_t>();
}

std::string idOf(const Json& line) {
    const auto id = line.find("id");
    if (id == line.end()) {
        return {};
    }
    if (!id->is_string() && !id->is_number()) {
        throw BadLine("\"id\" is neither a text nor a number");
    }
    return id->dump();
}

Call callOf(const Json& line) {
    const std::string& name = textField(line, "call");
    Call call{surface::findByName(surface::kMembers, name), {}, idOf(line)};
    if (call.member == nullptr) {
        throw BadLine("no member is called " + quoted(name));
    }
    const Json arguments = line.value("args", Json::array());  // none may be left out
    if (!arguments.is_array()) {
        throw BadLine("\"args\" is not an array");
    }
    const auto& parameters = call.member->parameters;
    if (arguments.size() != parameters.size()) {
        throw BadLine("the number of arguments of " + name + " is " +
                      std::to_string(parameters.size()) + ", not " +
                      std::to_string(arguments.size()));
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const std::string which = "argument " + std::to_string(i + 1) + " of " + name;
        call.arguments.push_back(argument(arguments[i], parameters[i].type, which));
    }
    return call;
}

When whenOf(const Json& line) {
    const std::string& name = textField(line, "when");
    const auto* event = surface::findByName(surface::kEvents, name);
    if (event == nullptr) {
        throw BadLine("no event is called " + quoted(name));
    }
    const Json& nth = field(line, "nth");
    if (!nth.is_number_unsigned() || nth.get<std::uint64_t>() == 0) {
        throw BadLine("\"nth\" is not a number from 1 on");
    }
    return {event, nth.get<std::uint64_t>(), callOf(line)};
}

}  // namespace

Command parseCommand(const InputLine& line) {
    Fault fault;
    try {
        if (line.tooLong) {
            throw BadLine("the line is longer than " + std::to_string(LineReader::kLongest) +
                          " bytes");
        }
        if (line.text.find('\0') != std::string::npos) {
            // The JSON reader would take it for the end of the line.
            throw BadLine("the line holds the character NUL");
        }
        const Json object = parseObject(line.text);
        if (const auto call = object.find("call"); call != object.end() && call->is_string()) {
            fault.call = call->get<std::string>();
        }
        fault.id = idOf(object);
        return object.contains("when") ? Command(whenOf(object)) : Command(callOf(object));
    } catch (const BadLine& error) {
        fault.text = error.what();
        return fault;
    }
}

}  // namespace marlune::cli
