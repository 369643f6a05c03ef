// A registered control as a program with late binding uses it, and a record of what the user and
// the program get to see of it.
#pragma once

#include <windows.h>
// After windows.h:
#include <oleauto.h>
#include <wrl/client.h>

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "BoxReader.h"
#include "EventSink.h"

namespace marlune {

// A file of the build or of the sources, by its path below the root, as Windows programs name it.
std::wstring buildFile(const std::wstring& name);
std::wstring sourceFile(const std::wstring& name);

// A value of automation with its life.
struct Value : VARIANT {
    Value() : VARIANT{} {}
    Value(const char* utf8);
    Value(int number);
    // The declaration of VariantCopy lacks the const that it keeps to.
    Value(const Value& other) : VARIANT{} { VariantCopy(this, const_cast<Value*>(&other)); }
    Value& operator=(const Value&) = delete;
    ~Value() { VariantClear(this); }

    // Its type and value: "bool false", "text abc", "empty".
    [[nodiscard]] std::string text() const;
};

// What a late-bound call gave.
struct Outcome {
    HRESULT result = S_OK;
    Value value;
};

class Control {
public:
    Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] IDispatch* dispatch() const { return control_.Get(); }
    template <class Interface>
    Microsoft::WRL::ComPtr<Interface> as() const {
        Microsoft::WRL::ComPtr<Interface> other;
        control_->QueryInterface(__uuidof(Interface),
                                 reinterpret_cast<void**>(other.GetAddressOf()));
        return other;
    }
    // Lets the program's reference go.
    void release() { control_.Reset(); }

    Outcome call(const wchar_t* member, std::initializer_list<Value> arguments = {},
                 WORD how = DISPATCH_METHOD);
    Outcome put(const wchar_t* property, const Value& value) {
        return call(property, {value}, DISPATCH_PROPERTYPUT);
    }
    Outcome get(const wchar_t* property) { return call(property, {}, DISPATCH_PROPERTYGET); }
    // Chooses the port and the family, and connects.
    Outcome connect(const char* family = "GRM");

private:
    Microsoft::WRL::ComPtr<IDispatch> control_;
};

// Everything that a program hears of a control, in order: "EndDownload(W)", and what the user sees:
// "[critical] text". Lines can be followed by an action, which runs inside the handler.
class Record {
public:
    explicit Record(const Control& control);

    std::vector<std::string> lines;
    // Runs action when the line that starts so arrives for the nth time.
    void when(const std::string& start, int nth, std::function<void()> action);
    // How many lines start so.
    [[nodiscard]] std::ptrdiff_t count(const std::string& start) const;
    // The text lines of the events of that name: the second parameter of each.
    [[nodiscard]] std::vector<std::string> records(const std::string& event) const;
    EventSink& sink() { return sink_; }

private:
    struct Trigger {
        std::string start;
        int left;
        std::function<void()> action;
    };
    void add(const std::string& line);

    std::vector<Trigger> triggers_;
    EventSink sink_;
    BoxReader boxes_;
};

}  // namespace marlune
