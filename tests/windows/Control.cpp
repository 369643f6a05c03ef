#include "Control.h"

#include <algorithm>

#include "base/WideText_windows.h"

namespace marlune {
namespace {

std::string textOf(const std::wstring& name, DISPPARAMS& parameters) {
    std::string line = fromWide(name) + "(";
    const char* separator = "";
    for (const std::wstring& value : parameterTexts(parameters)) {
        line += separator + fromWide(value);
        separator = ", ";
    }
    return line + ")";
}

}  // namespace

std::wstring buildFile(const std::wstring& name) {
    return toWide(MARLUNE_BUILD_FOLDER) + L"\\" + name;
}

std::wstring sourceFile(const std::wstring& name) {
    return toWide(MARLUNE_SOURCE_FOLDER) + L"\\" + name;
}

Value::Value(const char* utf8) : VARIANT{} {
    vt = VT_BSTR;
    bstrVal = SysAllocString(toWide(utf8).c_str());
}

Value::Value(int number) : VARIANT{} {
    vt = VT_I4;
    lVal = number;
}

std::string Value::text() const {
    switch (vt) {
        case VT_EMPTY:
            return "empty";
        case VT_BOOL:
            return boolVal != VARIANT_FALSE ? "bool true" : "bool false";
        case VT_BSTR:
            return "text " + fromWide({bstrVal, SysStringLen(bstrVal)});
        case VT_R8:
            return "double " + std::to_string(dblVal);
        default:
            return "type " + std::to_string(vt);
    }
}

Control::Control() {
    CLSID id{};
    CLSIDFromProgID(L"Marlune.GpsControl", &id);
    const HRESULT made =
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&control_));
    if (FAILED(made)) {
        throw std::runtime_error("no control: " + std::to_string(made));
    }
}

Outcome Control::call(const wchar_t* member, std::initializer_list<Value> arguments, WORD how) {
    Outcome outcome;
    std::wstring name = member;
    LPOLESTR names = name.data();
    DISPID id = 0;
    outcome.result = control_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(outcome.result)) {
        return outcome;
    }
    std::vector<VARIANT> reversed(arguments.begin(), arguments.end());
    std::reverse(reversed.begin(), reversed.end());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
    if (how == DISPATCH_PROPERTYPUT) {
        parameters.rgdispidNamedArgs = &put;
        parameters.cNamedArgs = 1;
    }
    outcome.result = control_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, how, &parameters,
                                      &outcome.value, nullptr, nullptr);
    return outcome;
}

Outcome Control::connect(const char* family) {
    put(L"SetGpsMark", family);
    put(L"setNumPort", 3);
    return call(L"gpsConnect");
}

Record::Record(const Control& control)
    : sink_([this](const std::wstring& name, DISPPARAMS& parameters) {
          add(textOf(name, parameters));
      }),
      boxes_([this](const std::wstring& text, const std::string& icon) {
          add("[" + icon + "] " + fromWide(text));
      }) {
    if (FAILED(sink_.connect(control.dispatch()))) {
        throw std::runtime_error("the control's events cannot be connected");
    }
}

void Record::add(const std::string& line) {
    lines.push_back(line);
    for (Trigger& trigger : triggers_) {
        if (line.starts_with(trigger.start) && --trigger.left == 0) {
            trigger.action();
        }
    }
}

void Record::when(const std::string& start, int nth, std::function<void()> action) {
    triggers_.push_back({start, nth, std::move(action)});
}

std::ptrdiff_t Record::count(const std::string& start) const {
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return line.starts_with(start); });
}

std::vector<std::string> Record::records(const std::string& event) const {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.starts_with(event + "(")) {
            const std::size_t from = line.find(", ") + 2;
            found.push_back(line.substr(from, line.rfind(", ") - from));
        }
    }
    return found;
}

}  // namespace marlune
