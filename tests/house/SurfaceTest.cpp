// Whatever says by hand what the control's surface is (the description of its types for Windows,
// the public headers, the manual) says what the tables say, and the JSON host says it too.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>

#include "cli/Interrupt.h"
#include "cli/Output.h"
#include "cli/host/CommandParser.h"
#include "cli/host/EventWriter.h"
#include "support/SurfaceLines.h"

namespace marlune {
namespace {

using testing::ElementsAreArray;
using testing::UnorderedElementsAreArray;
using Lines = std::vector<std::string>;

std::string sourceText(const std::filesystem::path& name) {
    std::ifstream file(std::filesystem::path(MARLUNE_SOURCE_FOLDER) / name);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator(file), std::istreambuf_iterator<char>()};
}

// Without comments of whole lines, and with one blank for all white space.
std::string plainSource(const std::filesystem::path& name) {
    const std::string bare =
        std::regex_replace(sourceText(name), std::regex(R"((^|\n)\s*//[^\n]*)"), "");
    return std::regex_replace(bare, std::regex(R"(\s+)"), " ");
}

// What a pattern finds: each time the whole match and its groups.
std::vector<Lines> matches(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::vector<Lines> found;
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at) {
        found.emplace_back(at->begin(), at->end());
    }
    return found;
}

// What stands from one mark to the next.
std::string between(const std::string& text, const std::string& from, const std::string& to) {
    const std::size_t begin = text.find(from);
    EXPECT_NE(begin, std::string::npos) << from;
    return begin == std::string::npos ? "" : text.substr(begin, text.find(to, begin) - begin);
}

// A member or an event in the description of types.
struct Declaration {
    std::string id, kind, name, result;
    std::vector<std::pair<std::string, std::string>> parameters;  // name and type

    [[nodiscard]] std::string line() const {
        std::string list;
        for (const auto& [parameter, type] : parameters) {
            list += list.empty() ? "" : ", ";
            list += kind == "put" ? type : parameter + " " + type;
        }
        return id + " " + kind + " " + name + "(" + list + ") " + result;
    }
};

std::vector<Declaration> declarationsIn(const std::string& interface) {
    const std::map<std::string, std::string> types = {
        {"BSTR", "string"},     {"BSTR*", "string&"}, {"VARIANT_BOOL*", "boolean"},
        {"double*", "double"},  {"short", "short"},   {"VARIANT*", "variant"},
        {"numPort", "numPort"},
    };
    const std::map<std::string, std::string> kinds = {
        {"", "method"}, {"propput", "put"}, {"propget", "get"}};
    std::vector<Declaration> found;
    const char* function =
        R"(\[id\((\d+)\)(?:, (prop\w+))?, helpcontext[^\]]*\] (?:HRESULT|void) (\w+)\(([^)]*)\);)";
    for (const Lines& match : matches(interface, function)) {
        Declaration declared{match[1], kinds.at(match[2]), match[3], "void", {}};
        const std::string list = match[4];
        for (const Lines& parameter : matches(list, R"(\[([a-z, ]+)\] (\w+\*?) (\w+))")) {
            const bool result = parameter[1] == "out, retval";
            std::string type = types.at(parameter[2]);
            if (result) {
                declared.result = parameter[2] == "BSTR*" ? "string" : type;
            } else {
                declared.parameters.emplace_back(parameter[3], type);
            }
        }
        found.push_back(declared);
    }
    return found;
}

Lines linesOf(const std::vector<Declaration>& declarations) {
    Lines lines;
    for (const Declaration& declaration : declarations) {
        lines.push_back(declaration.line());
    }
    return lines;
}

class SurfaceTest : public testing::Test {
protected:
    const std::string types = plainSource("apps/activex/marlune.idl");
    const std::vector<Declaration> members =
        declarationsIn(between(types, "interface _GpsControl", "dispinterface"));
    const std::vector<Declaration> events =
        declarationsIn(between(types, "dispinterface __GpsControl {", "coclass"));
};

TEST_F(SurfaceTest, IsThatOfTheTypeLibrary) {
    EXPECT_THAT(linesOf(members), ElementsAreArray(memberLines()));
    EXPECT_THAT(linesOf(events), ElementsAreArray(eventLines()));
}

// Declarations of a class as "StartNMEA(NMEACode, Delai)". The values beside the texts, from
// records() on, and constant members are no part of the surface: they are of this language only.
Lines declaredIn(const std::string& header, const std::string& className) {
    const std::string body = between(
        plainSource(header), "class MARLUNE_EXPORT " + className + " {", "}; } // namespace");
    Lines lines;
    const std::string all = between(body, "~" + className, " private:");
    const std::string surface = all.substr(0, all.find("const Records& records("));
    for (const Lines& statement : matches(surface, R"([^;{}]+)")) {
        const std::regex function(R"( (?:virtual )?[\w:]+ (\w+)\((.*)\) ?)");
        std::smatch parts;
        if (std::regex_match(statement[0], parts, function)) {
            const std::string list = parts[2];
            std::string names;
            for (const Lines& name : matches(list, R"((\w+)(?:\*/)?(?:,|$))")) {
                names += (names.empty() ? "" : ", ") + name[1];
            }
            lines.push_back(parts.str(1) + "(" + names + ")");
        }
    }
    return lines;
}

template <class Rows>
Lines namesIn(const Rows& rows) {
    Lines lines;
    for (const auto& row : rows) {
        std::string names;
        for (const surface::Parameter& parameter : row.parameters) {
            names += (names.empty() ? "" : ", ") + std::string(parameter.name);
        }
        lines.push_back(std::string(row.name) + "(" + names + ")");
    }
    return lines;
}

TEST_F(SurfaceTest, IsThatOfThePublicHeaders) {
    EXPECT_THAT(declaredIn("include/marlune/GpsControl.h", "GpsControl"),
                ElementsAreArray(namesIn(surface::kMembers)));
    EXPECT_THAT(declaredIn("include/marlune/GpsControlEvents.h", "GpsControlEvents"),
                ElementsAreArray(namesIn(surface::kEvents)));
}

// A row whose name is not that of the function beside it.
TEST_F(SurfaceTest, NamesWhatItsRowsCall) {
    const std::string table = plainSource("src/control/Surface.h");
    Lines called;
    Lines named;
    for (const Lines& row : matches(table, R"re(<&GpsControl::(\w+)>\( ?\d+, "(\w+)")re")) {
        called.push_back(row[1]);
        named.push_back(row[2]);
    }
    EXPECT_EQ(called.size(), surface::kMembers.size());
    EXPECT_EQ(called, named);
}

class NothingToDo : public cli::EventListener {
    void eventBegins() override {}
    void eventWritten(const surface::Event& /*event*/) override {}
};

// Raises every event, and returns what the JSON host writes.
std::string everyEventWritten() {
    std::FILE* file = std::tmpfile();
    const cli::Interrupt interrupt;
    cli::Output output(fileno(file), interrupt);
    cli::JsonWriter writer(output);
    NothingToDo listener;
    cli::EventWriter written(writer, listener);
    for (const surface::Event& event : surface::kEvents) {
        std::vector<surface::EventValue> values;
        for (const surface::Parameter& parameter : event.parameters) {
            values.push_back(parameter.type == surface::Type::integer
                                 ? surface::EventValue(std::int16_t{7})
                                 : parameter.name);
        }
        event.raise(written, values);
    }
    std::rewind(file);
    std::string text(10'000, '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file));
    std::fclose(file);
    return text;
}

TEST_F(SurfaceTest, GivesTheJsonHostItsKeys) {
    std::string expected;
    for (const Declaration& event : events) {
        expected += R"({"event":")" + event.name + '"';
        for (const auto& [name, type] : event.parameters) {
            expected += ",\"" + name + "\":" + (type == "short" ? "7" : '"' + name + '"');
        }
        expected += "}\n";
    }
    EXPECT_EQ(everyEventWritten(), expected);
}

// The rows of a table of the manual, "name | second cell" for each name of the first cell, with
// what explains a cell behind a colon left out.
Lines manualRows(const std::string& manual, const std::string& head) {
    Lines rows;
    const std::string table = between(manual, head, "\n\n");
    for (const Lines& row : matches(table, R"(\n\| (`.*?) \|([^|\n]*)\|([^|\n]*)\|)")) {
        const std::string names = row[1];
        for (const Lines& name : matches(names, R"(`(\w+)`)")) {
            rows.push_back(name[1] + " |" + row[2] + "|" +
                           std::regex_replace(row[3], std::regex(":.*"), " "));
        }
    }
    return rows;
}

std::string manualParameters(const surface::Parameters& parameters) {
    std::string list;
    for (const surface::Parameter& parameter : parameters) {
        const bool number =
            parameter.type == surface::Type::integer || parameter.type == surface::Type::port;
        list += (list.empty() ? "`" : ", `") + std::string(parameter.name) +
                (number ? "` integer" : "` text");
    }
    return list.empty() ? " " : " " + list + " ";
}

TEST_F(SurfaceTest, IsThatOfTheManual) {
    const std::map<surface::Type, std::string> results = {
        {surface::Type::none, "`null`"},
        {surface::Type::boolean, "`true` or `false`"},
        {surface::Type::number, "number"},
        {surface::Type::text, "text"}};
    const std::string manual = sourceText("docs/command-line.md");
    Lines rows;
    for (const surface::Member& member : surface::kMembers) {
        rows.push_back(std::string(member.name) + " |" + manualParameters(member.parameters) +
                       "| " + results.at(member.gives) + " ");
    }
    EXPECT_THAT(manualRows(manual, "| member | arguments |"), UnorderedElementsAreArray(rows));
    rows.clear();
    for (const surface::Event& event : surface::kEvents) {
        rows.push_back(std::string(event.name) + " |" + manualParameters(event.parameters));
    }
    Lines events;
    for (const std::string& row : manualRows(manual, "| event | parameters |")) {
        events.push_back(row.substr(0, row.rfind('|')));
    }
    EXPECT_THAT(events, UnorderedElementsAreArray(rows));
}

// The JSON lines that the manual shows: calls that can be made, and events as they are written.
TEST_F(SurfaceTest, IsThatOfTheManualsExamples) {
    const std::string manual = sourceText("docs/command-line.md");
    for (const Lines& line : matches(manual, R"re(\{"(?:call|when)":"[^\n}]*"args":[^\n}]*\})re")) {
        const cli::Command command = cli::parseCommand({line[0]});
        EXPECT_FALSE(std::holds_alternative<cli::Fault>(command)) << line[0];
    }
    for (const Lines& line : matches(manual, R"re(\{"event":"(\w+)",([^\n]*)\})re")) {
        std::string names;
        const std::string rest = line[2];
        for (const Lines& key : matches(rest, R"re("(\w+)":)re")) {
            names += (names.empty() ? "" : ", ") + key[1];
        }
        EXPECT_THAT(namesIn(surface::kEvents), testing::Contains(line[1] + "(" + names + ")"));
    }
}

}  // namespace
}  // namespace marlune
