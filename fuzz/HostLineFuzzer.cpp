// The scriptable host's input: the line reader and the command parser. The first byte of the input
// is the size of the pieces in which the rest arrives.
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "Require.h"
#include "base/CodePage.h"
#include "cli/host/CommandParser.h"

namespace {

using namespace marlune::cli;
using marlune::require;
namespace surface = marlune::surface;

std::vector<InputLine> linesOf(std::string_view text, std::size_t piece) {
    LineReader reader(100);
    std::vector<InputLine> lines;
    for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) {
        reader.feed(text.substr(0, piece));
    }
    reader.finish();
    while (auto line = reader.next()) {
        lines.push_back(std::move(*line));
    }
    return lines;
}

void check(const Call& call) {
    require(call.arguments.size() == call.member->parameters.size());
    for (std::size_t i = 0; i < call.arguments.size(); ++i) {
        const bool text = std::holds_alternative<std::string>(call.arguments[i]);
        const auto type = call.member->parameters[i].type;
        require(text == (type == surface::Type::text || type == surface::Type::textReference));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    const std::string_view text(reinterpret_cast<const char*>(bytes) + 1, size - 1);
    const auto lines = linesOf(text, 1U + bytes[0]);
    const auto same = linesOf(text, text.size() + 1);
    require(lines.size() == same.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        require(lines[i].text == same[i].text && lines[i].tooLong == same[i].tooLong);
        require(lines[i].text.size() <= 100);
        const Command command = parseCommand(lines[i]);
        if (const auto* call = std::get_if<Call>(&command)) {
            check(*call);
        } else if (const auto* when = std::get_if<When>(&command)) {
            require(when->events > 0);
            check(when->call);
        } else {
            const std::string& fault = std::get<Fault>(command).text;
            require(!fault.empty() && marlune::isUtf8(fault));
        }
    }
    // Whole, for what does not fit into the short lines.
    (void)parseCommand({std::string(text)});
    return 0;
}
