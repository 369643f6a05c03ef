// What the tables of Surface.h are made of. A row that does not fit the declaration of its member
// or event does not compile.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "marlune/GpsControl.h"
#include "marlune/GpsControlEvents.h"
#include "marlune/Report.h"

namespace marlune::surface {

// The types of parameters and results, as automation declares them.
enum class Type {
    none,
    boolean,
    integer,        // of 16 bits
    number,         // a double
    text,           // a string
    textReference,  // a string variable of the caller's
    port,           // numPort
    variant         // holds a Boolean, or nothing
};

struct Parameter {
    std::string_view name;
    Type type;
};

class Parameters {
public:
    constexpr Parameters(std::initializer_list<Parameter> parameters) {
        for (const Parameter& parameter : parameters) {
            all_[count_++] = parameter;
        }
    }
    [[nodiscard]] constexpr std::size_t size() const { return count_; }
    [[nodiscard]] constexpr const Parameter* begin() const { return all_.data(); }
    [[nodiscard]] constexpr const Parameter* end() const { return all_.data() + count_; }
    constexpr const Parameter& operator[](std::size_t i) const { return all_[i]; }

private:
    std::array<Parameter, 3> all_{};
    std::size_t count_ = 0;
};

// What a member is called with, a number for integers and ports; and what it gives: nothing, or a
// value. A text is UTF-8.
using Argument = std::variant<std::string, std::int16_t>;
using Result = std::variant<std::monostate, bool, double, std::string>;
// What an event carries. A text holds until the handler returns.
using EventValue = std::variant<std::int16_t, std::string_view>;

enum class Kind { method, propertyGet, propertyPut };

// What a member is to the one that runs when it is called, and to the reports.
enum class Role {
    none,
    connects,     // leaves GpsControl::lastConnection()
    disconnects,  // ends the member that runs, and the connection
    stops,        // ends the member that runs
    transfers     // leaves GpsControl::lastTransfer()
};

struct Member {
    int id;  // by which automation calls it
    Kind kind;
    std::string_view name;
    Parameters parameters;
    Type result;  // as automation declares it
    Type gives;   // the type of the value: boolean, number, text or none
    Role role;
    TransferKind transfer;  // of a member that transfers
    // The arguments must be as the parameters say.
    Result (*call)(GpsControl&, std::span<const Argument>);
};

// What an event is about. Behind the status, the first text is a line of what is transferred.
enum class Tells {
    begin,   // a transfer begins: a number of records and, last, a header line
    end,     // a transfer or a run has ended
    status,  // a text for the user
    waypoint,
    proximity,
    track,
    trackPoint,
    route,
    routePoint,
    routeLink,
    runHeader,
    fix,
    sentence
};

struct Event {
    int id;  // by which automation raises it
    std::string_view name;
    Parameters parameters;
    Tells tells;
    // Raises it with these values, which must be as the parameters say.
    void (*raise)(GpsControlEvents&, std::span<const EventValue>);
};

constexpr Parameter text(std::string_view name) {
    return {name, Type::text};
}
constexpr Parameter textReference(std::string_view name) {
    return {name, Type::textReference};
}
constexpr Parameter integer(std::string_view name) {
    return {name, Type::integer};
}
constexpr Parameter port(std::string_view name) {
    return {name, Type::port};
}

namespace detail {

// What C++ takes for each type of a parameter, and how that is made from an argument.
template <class P>
struct Declared;

template <>
struct Declared<std::string> {
    static constexpr bool as(Type type) {
        return type == Type::text || type == Type::textReference;
    }
    static const std::string& from(const Argument& argument) {
        return std::get<std::string>(argument);
    }
    static std::string from(const EventValue& value) {
        return std::string(std::get<std::string_view>(value));
    }
};

template <>
struct Declared<std::int16_t> {
    static constexpr bool as(Type type) { return type == Type::integer; }
    static std::int16_t from(const auto& value) { return std::get<std::int16_t>(value); }
};

// Any number is handed on: the control opens what is no port as it opens what is none.
template <>
struct Declared<numPort> {
    static constexpr bool as(Type type) { return type == Type::port; }
    static numPort from(const Argument& argument) {
        return static_cast<numPort>(std::get<std::int16_t>(argument));
    }
};

template <class R>
constexpr Type typeOf() {
    if constexpr (std::is_void_v<R>) {
        return Type::none;
    } else if constexpr (std::is_same_v<R, bool>) {
        return Type::boolean;
    } else if constexpr (std::is_same_v<R, double>) {
        return Type::number;
    } else {
        static_assert(std::is_same_v<R, std::string>);
        return Type::text;
    }
}

template <class... P>
constexpr bool declares(const Parameters& parameters) {
    std::size_t i = 0;
    return parameters.size() == sizeof...(P) &&
           (Declared<std::remove_cvref_t<P>>::as(parameters[i++].type) && ...);
}

// Automation has a value for every result of a method, an empty variant for none.
constexpr bool carries(Type result, Kind kind, Type value) {
    if (result == Type::variant) {
        return kind == Kind::method && (value == Type::none || value == Type::boolean);
    }
    return result == value && (kind == Kind::propertyPut) == (value == Type::none);
}

// A host that knows no more than what an event tells finds that in its parameters.
constexpr bool suffice(const Parameters& parameters, Tells tells) {
    bool hasText = false;
    bool hasInteger = false;
    for (const Parameter& parameter : parameters) {
        hasText = hasText || parameter.type == Type::text;
        hasInteger = hasInteger || parameter.type == Type::integer;
    }
    if (tells == Tells::begin) {
        return hasInteger && parameters[parameters.size() - 1].type == Type::text;
    }
    return hasText || tells == Tells::end;
}

template <auto method>
struct MemberOf;

template <class R, class... P, R (GpsControl::*method)(P...)>
struct MemberOf<method> {
    static constexpr Member row(int id, Kind kind, std::string_view name,
                                const Parameters& parameters, Type result, Role role,
                                TransferKind transfer) {
        if (!declares<P...>(parameters) || !carries(result, kind, typeOf<R>())) {
            throw "the row does not fit the member's declaration";
        }
        return {id, kind, name, parameters, result, typeOf<R>(), role, transfer, &call};
    }
    static Result call(GpsControl& control, std::span<const Argument> arguments) {
        return callWith(control, arguments, std::index_sequence_for<P...>());
    }
    template <std::size_t... i>
    static Result callWith(GpsControl& control,
                           [[maybe_unused]] std::span<const Argument> arguments,
                           std::index_sequence<i...> /*indices*/) {
        if constexpr (std::is_void_v<R>) {
            (control.*method)(Declared<std::remove_cvref_t<P>>::from(arguments[i])...);
            return {};
        } else {
            return (control.*method)(Declared<std::remove_cvref_t<P>>::from(arguments[i])...);
        }
    }
};

template <auto method>
struct EventOf;

template <class... P, void (GpsControlEvents::*method)(P...)>
struct EventOf<method> {
    static constexpr Event row(int id, std::string_view name, const Parameters& parameters,
                               Tells tells) {
        if (!declares<P...>(parameters) || !suffice(parameters, tells)) {
            throw "the row does not fit the event's declaration";
        }
        return {id, name, parameters, tells, &raise};
    }
    static void raise(GpsControlEvents& events, std::span<const EventValue> values) {
        raiseWith(events, values, std::index_sequence_for<P...>());
    }
    template <std::size_t... i>
    static void raiseWith(GpsControlEvents& events,
                          [[maybe_unused]] std::span<const EventValue> values,
                          std::index_sequence<i...> /*indices*/) {
        (events.*method)(Declared<std::remove_cvref_t<P>>::from(values[i])...);
    }
};

}  // namespace detail

template <auto member>
consteval Member method(int id, std::string_view name, const Parameters& parameters, Type result,
                        Role role = Role::none) {
    return detail::MemberOf<member>::row(id, Kind::method, name, parameters, result, role,
                                         TransferKind::none);
}

template <auto member>
consteval Member transfer(int id, std::string_view name, const Parameters& parameters, Type result,
                          TransferKind kind) {
    return detail::MemberOf<member>::row(id, Kind::method, name, parameters, result,
                                         Role::transfers, kind);
}

template <auto member>
consteval Member propertyGet(int id, std::string_view name, Type result) {
    return detail::MemberOf<member>::row(id, Kind::propertyGet, name, {}, result, Role::none,
                                         TransferKind::none);
}

template <auto member>
consteval Member propertyPut(int id, std::string_view name, const Parameter& value) {
    return detail::MemberOf<member>::row(id, Kind::propertyPut, name, {value}, Type::none,
                                         Role::none, TransferKind::none);
}

template <auto raised>
consteval Event event(int id, std::string_view name, const Parameters& parameters, Tells tells) {
    return detail::EventOf<raised>::row(id, name, parameters, tells);
}

// Ids begin with 1, in the order of the rows.
template <class Rows>
constexpr bool isNumberedFromOne(const Rows& rows) {
    int id = 0;
    for (const auto& row : rows) {
        if (row.id != ++id) {
            return false;
        }
    }
    return true;
}

// Null when there is none of that name.
template <class Rows>
constexpr auto findByName(const Rows& rows, std::string_view name) -> decltype(rows.data()) {
    for (const auto& row : rows) {
        if (row.name == name) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace marlune::surface
