#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/host/CommandParser.h"

namespace marlune::cli {
namespace {

using testing::HasSubstr;

// What a line asks for, as a text.
std::string describe(const Call& call) {
    std::string text(call.member->name);
    for (const surface::Argument& argument : call.arguments) {
        const auto* number = std::get_if<std::int16_t>(&argument);
        text += number != nullptr ? " " + std::to_string(*number)
                                  : " '" + std::get<std::string>(argument) + "'";
    }
    return text + (call.id.empty() ? "" : " #" + call.id);
}

std::string describe(const std::string& line) {
    const Command command = parseCommand({line});
    if (const auto* call = std::get_if<Call>(&command)) {
        return describe(*call);
    }
    if (const auto* when = std::get_if<When>(&command)) {
        return std::string(when->event->name) + " " + std::to_string(when->events) + ": " +
               describe(when->call);
    }
    return "! " + std::get<Fault>(command).text;
}

TEST(CommandParser, ReadsCallsAndHandlers) {
    const struct {
        const char* line;
        const char* meaning;
    } cases[] = {
        {R"({"call":"gpsConnect","args":[]})", "gpsConnect"},
        {R"({"call":"gpsConnect"})", "gpsConnect"},
        {" { \"args\" : [ 3 ] , \"call\" : \"setNumPort\" } \r", "setNumPort 3"},
        {R"({"call":"setNumPort","args":[-32768],"id":7})", "setNumPort -32768 #7"},
        {R"({"call":"getIdent","id":"\u00e9"})", "getIdent #\"\xC3\xA9\""},
        {R"({"call":"setNumPort","args":[32767]})", "setNumPort 32767"},
        {R"({"call":"StartNMEA","args":["$GPGGA",5]})", "StartNMEA '$GPGGA' 5"},
        {R"({"call":"SendWaypts","args":["\u00e9\ud83d\ude00\n"]})",
         "SendWaypts '\xC3\xA9\xF0\x9F\x98\x80\n'"},
        {R"({"when":"WayptData","nth":1,"call":"StopTransfert","args":[]})",
         "WayptData 1: StopTransfert"},
        {R"({"when":"EndPvt","nth":18446744073709551615,"call":"SetDebug","args":["ON"]})",
         "EndPvt 18446744073709551615: SetDebug 'ON'"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(describe(c.line), c.meaning) << c.line;
    }
}

TEST(CommandParser, NamesTheFaultOfEveryOtherLine) {
    const struct {
        std::string line;
        const char* fault;
    } cases[] = {
        {"", "not JSON"},
        {"gpsConnect", "not JSON"},
        {R"({"call":"gpsConnect","args":[]} {})", "not JSON"},
        {R"({"call":"gpsConnect","args":[])", "not JSON"},
        {"{\"call\":\"\xFF\",\"args\":[]}", "not JSON"},
        {R"({"call":"\ud800","args":[]})", "not JSON"},
        {R"({"call":"gpsConnect","args":[]})" + std::string(1, '\0'), "NUL"},
        {R"({"call":"SendWaypts","args":["a\u0000b"]})", "argument 1 of SendWaypts"},
        {"[]", "not a JSON object"},
        {"null", "not a JSON object"},
        {"{}", "\"call\" is missing"},
        {R"({"call":7,"args":[]})", "\"call\" is not a text"},
        {R"({"call":"gpsconnect","args":[]})", "no member is called \"gpsconnect\""},
        {R"({"call":"gpsConnect","args":{}})", "\"args\" is not an array"},
        {R"({"call":"gpsConnect","args":[1]})", "arguments of gpsConnect is 0, not 1"},
        {R"({"call":"StartNMEA","args":["$GPGGA"]})", "arguments of StartNMEA is 2, not 1"},
        {R"({"call":"setNumPort","args":["3"]})", "argument 1 of setNumPort is not an integer"},
        {R"({"call":"setNumPort","args":[3.0]})", "argument 1 of setNumPort is not an integer"},
        {R"({"call":"setNumPort","args":[32768]})", "out of range"},
        {R"({"call":"setNumPort","args":[-32769]})", "out of range"},
        {R"({"call":"setNumPort","args":[18446744073709551615]})", "out of range"},
        {R"({"call":"setNumPort","args":[1e999]})", "out of range"},
        {R"({"call":"StartNMEA","args":["$GPGGA",null]})", "argument 2 of StartNMEA"},
        {R"({"call":"SetDebug","args":[true]})", "argument 1 of SetDebug is not a text"},
        {R"({"when":"WayptData","call":"StopTransfert","args":[]})", "\"nth\" is missing"},
        {R"({"when":"WayptData","nth":0,"call":"StopTransfert","args":[]})", "\"nth\""},
        {R"({"when":"WayptData","nth":-1,"call":"StopTransfert","args":[]})", "\"nth\""},
        {R"({"when":"WayptData","nth":1.5,"call":"StopTransfert","args":[]})", "\"nth\""},
        {R"({"when":"Waypt","nth":1,"call":"StopTransfert","args":[]})",
         "no event is called \"Waypt\""},
        {R"({"when":7,"nth":1,"call":"StopTransfert","args":[]})", "\"when\" is not a text"},
        {R"({"when":"EndPvt","nth":1})", "\"call\" is missing"},
        {R"({"when":"EndPvt","nth":1,"call":"SetDebug","args":[]})", "arguments of SetDebug"},
        {std::string(500'000, '['), "nested too deep"},
        {R"({"call":")" + std::string(100, 'x') + R"(","args":[]})", R"(xxx...")"},
    };
    for (const auto& c : cases) {
        const std::string meaning = describe(c.line);
        EXPECT_EQ(meaning.substr(0, 2), "! ") << c.line.substr(0, 200);
        EXPECT_THAT(meaning, HasSubstr(c.fault)) << c.line.substr(0, 200);
    }
    EXPECT_THAT(std::get<Fault>(parseCommand({"", true})).text, HasSubstr("longer than"));
    const auto fault = std::get<Fault>(parseCommand({R"({"call":"Format","id":[1]})"}));
    EXPECT_THAT(fault.text, HasSubstr("\"id\" is neither"));
    const auto misspelt = std::get<Fault>(parseCommand({R"({"call":"Format","id":"a"})"}));
    EXPECT_EQ(misspelt.call + misspelt.id, "Format\"a\"");
}

}  // namespace
}  // namespace marlune::cli
