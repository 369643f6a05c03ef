#include "cli/host/MemberTable.h"

#include <algorithm>

namespace marlune::cli {
namespace {

template <class T>
struct ParameterOf;

template <>
struct ParameterOf<const std::string&> {
    static constexpr Parameter kind = Parameter::text;
    static const std::string& from(const Argument& argument) {
        return std::get<std::string>(argument);
    }
};

template <>
struct ParameterOf<std::int16_t> {
    static constexpr Parameter kind = Parameter::integer;
    static std::int16_t from(const Argument& argument) { return std::get<std::int16_t>(argument); }
};

// Any number is handed on: the control opens what is no port as it opens what is none.
template <>
struct ParameterOf<numPort> {
    static constexpr Parameter kind = Parameter::integer;
    static numPort from(const Argument& argument) {
        return static_cast<numPort>(std::get<std::int16_t>(argument));
    }
};

template <auto method>
struct Caller;

template <class R, class... P, R (GpsControl::*method)(P...)>
struct Caller<method> {
    static Result call(GpsControl& control, const Arguments& arguments) {
        return callWith(control, arguments, std::index_sequence_for<P...>());
    }
    static std::vector<Parameter> parameters() { return {ParameterOf<P>::kind...}; }

private:
    template <std::size_t... i>
    static Result callWith(GpsControl& control, [[maybe_unused]] const Arguments& arguments,
                           std::index_sequence<i...> /*indices*/) {
        if constexpr (std::is_void_v<R>) {
            (control.*method)(ParameterOf<P>::from(arguments[i])...);
            return {};
        } else {
            return (control.*method)(ParameterOf<P>::from(arguments[i])...);
        }
    }
};

template <auto method>
Member row(std::string_view name, Urgency urgency = Urgency::waits) {
    return {name, Caller<method>::parameters(), &Caller<method>::call, urgency};
}

}  // namespace

const std::vector<Member>& members() {
    static const std::vector<Member> table = {
        row<&GpsControl::GetTime>("GetTime"),
        row<&GpsControl::SetDebug>("SetDebug"),
        row<&GpsControl::SetGpsMark>("SetGpsMark"),
        row<&GpsControl::StartPvtData>("StartPvtData"),
        row<&GpsControl::gpsConnect>("gpsConnect"),
        row<&GpsControl::gpsDisconnect>("gpsDisconnect", Urgency::disconnects),
        row<&GpsControl::getTracks>("getTracks"),
        row<&GpsControl::getWaypts>("getWaypts"),
        row<&GpsControl::GetRoutes>("GetRoutes"),
        row<&GpsControl::getIdent>("getIdent"),
        row<&GpsControl::getProximites>("getProximites"),
        row<&GpsControl::getPosition>("getPosition"),
        row<&GpsControl::setNumPort>("setNumPort"),
        row<&GpsControl::StopPvtData>("StopPvtData", Urgency::stops),
        row<&GpsControl::StopTransfert>("StopTransfert", Urgency::stops),
        row<&GpsControl::SendWaypts>("SendWaypts"),
        row<&GpsControl::getProtocoles>("getProtocoles"),
        row<&GpsControl::SendRoutes>("SendRoutes"),
        row<&GpsControl::SendTraces>("SendTraces"),
        row<&GpsControl::StartNMEA>("StartNMEA"),
        row<&GpsControl::StopNMEA>("StopNMEA", Urgency::stops),
        row<&GpsControl::ResetComBuffers>("ResetComBuffers"),
    };
    return table;
}

const Member* findMember(std::string_view name) {
    const auto& table = members();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const Member& member) { return member.name == name; });
    return found == table.end() ? nullptr : &*found;
}

const std::vector<std::string_view>& eventNames() {
    static const std::vector<std::string_view> names = {
        "StartDownload", "StartUpload", "EndDownload", "EndUpload", "GpsInfo",   "TrackData",
        "TrackHeader",   "WayptData",   "RouteHeader", "RouteData", "RouteLink", "ProxData",
        "Startpvt",      "PvtData",     "EndPvt",      "PhraseNMEA"};
    return names;
}

}  // namespace marlune::cli
