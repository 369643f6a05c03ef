// Runs a script file as cscript does, with the object WScript and, unlike Wine's cscript, with the
// events of the objects that the script creates.
//
//   script_host FILE [ARGUMENT...]
//
// A message box is answered with OK and printed as "[icon] text". Ends with the number that the
// script gives to WScript.Quit, or with 1 and a line on the standard error after a script error.
#include <windows.h>
// After windows.h:
#include <activscp.h>
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>
#include <wrl/client.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "BoxReader.h"
#include "EventSink.h"
#include "base/WideText_windows.h"

namespace marlune {
namespace {

using Microsoft::WRL::ComPtr;

void print(std::FILE* out, const std::wstring& line) {
    std::fprintf(out, "%s\n", fromWide(line).c_str());
    std::fflush(out);
}

// An object for scripts whose members are named in a list; the place in it is a member's id. It
// belongs to its maker.
class ScriptObject final : public IDispatch {
public:
    using Call = std::function<HRESULT(DISPID id, DISPPARAMS& parameters, VARIANT* result)>;

    ScriptObject(std::vector<std::wstring> members, Call call)
        : members_(std::move(members)), call_(std::move(call)) {}
    ScriptObject(const ScriptObject&) = delete;
    ScriptObject& operator=(const ScriptObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch);
        *result = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT /*index*/, LCID /*locale*/,
                                          ITypeInfo** /*info*/) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID /*reserved*/, LPOLESTR* names, UINT /*count*/,
                                            LCID /*locale*/, DISPID* ids) override {
        for (std::size_t i = 0; i < members_.size(); ++i) {
            if (_wcsicmp(members_[i].c_str(), names[0]) == 0) {
                ids[0] = static_cast<DISPID>(i);
                return S_OK;
            }
        }
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID /*reserved*/, LCID /*locale*/,
                                     WORD /*flags*/, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* /*exception*/, UINT* /*atFault*/) override {
        return call_(id, *parameters, result);
    }

private:
    std::vector<std::wstring> members_;
    Call call_;
};

void processMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
        DispatchMessageW(&message);
    }
}

class ScriptHost final : public IActiveScriptSite {
public:
    explicit ScriptHost(std::vector<std::wstring> words) : words_(std::move(words)) {}

    int run(const wchar_t* engine, const std::wstring& text);

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IActiveScriptSite);
        *result = known ? this : nullptr;
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetLCID(LCID* /*locale*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR /*name*/, DWORD mask, IUnknown** item,
                                          ITypeInfo** /*info*/) override {
        if ((mask & SCRIPTINFO_IUNKNOWN) == 0) {
            return TYPE_E_ELEMENTNOTFOUND;
        }
        *item = &object_;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR* /*version*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT* /*result*/,
                                                const EXCEPINFO* /*exception*/) override {
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE /*state*/) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override;
    HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

private:
    // WScript's members, and those of WScript.Arguments.
    HRESULT call(DISPID id, DISPPARAMS& parameters, VARIANT* result);
    HRESULT callArguments(DISPID id, DISPPARAMS& parameters, VARIANT* result) const;
    HRESULT createObject(const std::vector<std::wstring>& given, VARIANT* result);
    // Calls the script's procedure for an event, if it has one.
    void onEvent(const std::wstring& procedure, DISPPARAMS& parameters);

    std::vector<std::wstring> words_;
    ScriptObject object_{{L"Echo", L"CreateObject", L"Arguments", L"Sleep", L"Quit"},
                         [this](auto&&... given) { return call(given...); }};
    ScriptObject arguments_{{L"Item", L"Count", L"length"},
                            [this](auto&&... given) { return callArguments(given...); }};
    ComPtr<IActiveScript> script_;
    std::vector<std::unique_ptr<EventSink>> sinks_;
    bool quit_ = false;
    int exitCode_ = 0;
};

int ScriptHost::run(const wchar_t* engine, const std::wstring& text) {
    CLSID id{};
    ComPtr<IActiveScriptParse> parser;
    if (FAILED(CLSIDFromProgID(engine, &id)) ||
        FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&script_))) ||
        FAILED(script_.As(&parser))) {
        print(stderr, L"no script engine");
        return 1;
    }
    script_->SetScriptSite(this);
    parser->InitNew();
    script_->AddNamedItem(L"WScript", SCRIPTITEM_ISVISIBLE);
    // Connected first: the script's procedures exist, and events reach them, while its text runs.
    script_->SetScriptState(SCRIPTSTATE_CONNECTED);
    parser->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE,
                            nullptr, nullptr);
    for (const auto& sink : sinks_) {
        sink->disconnect();
    }
    script_->Close();
    return exitCode_;
}

HRESULT ScriptHost::OnScriptError(IActiveScriptError* error) {
    if (quit_) {
        return S_OK;
    }
    EXCEPINFO exception{};
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetExceptionInfo(&exception);
    error->GetSourcePosition(&context, &line, &column);
    print(stderr,
          L"line " + std::to_wstring(line + 1) + L": " +
              (exception.bstrDescription != nullptr ? exception.bstrDescription : L"error"));
    exitCode_ = 1;
    return S_OK;
}

HRESULT ScriptHost::call(DISPID id, DISPPARAMS& parameters, VARIANT* result) {
    const std::vector<std::wstring> given = parameterTexts(parameters);
    switch (id) {
        case 0:
            print(stdout, given.empty() ? L"" : given[0]);
            return S_OK;
        case 1:
            return createObject(given, result);
        case 2:
            if (parameters.cArgs > 0) {  // WScript.Arguments(0)
                return callArguments(DISPID_VALUE, parameters, result);
            }
            result->vt = VT_DISPATCH;
            result->pdispVal = &arguments_;
            return S_OK;
        case 3:
            processMessages();
            return S_OK;
        default:
            quit_ = true;
            exitCode_ = given.empty() ? 0 : std::stoi(given[0]);
            script_->InterruptScriptThread(SCRIPTTHREADID_CURRENT, nullptr, 0);
            return E_ABORT;  // an error is what ends a script
    }
}

HRESULT ScriptHost::callArguments(DISPID id, DISPPARAMS& parameters, VARIANT* result) const {
    result->vt = VT_I4;
    result->lVal = static_cast<LONG>(words_.size());
    if (id != DISPID_VALUE) {
        return S_OK;
    }
    const std::vector<std::wstring> given = parameterTexts(parameters);
    const std::size_t at = given.empty() ? words_.size() : std::stoul(given[0]);
    if (at >= words_.size()) {
        return DISP_E_BADINDEX;
    }
    result->vt = VT_BSTR;
    result->bstrVal = SysAllocString(words_[at].c_str());
    return S_OK;
}

HRESULT ScriptHost::createObject(const std::vector<std::wstring>& given, VARIANT* result) {
    CLSID id{};
    ComPtr<IDispatch> object;
    HRESULT made = given.empty() ? E_INVALIDARG : CLSIDFromProgID(given[0].c_str(), &id);
    if (SUCCEEDED(made)) {
        made = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&object));
    }
    if (SUCCEEDED(made) && given.size() > 1) {
        sinks_.push_back(std::make_unique<EventSink>(
            [this, prefix = given[1]](const std::wstring& name, DISPPARAMS& parameters) {
                onEvent(prefix + name, parameters);
            }));
        made = sinks_.back()->connect(object.Get());
    }
    if (SUCCEEDED(made) && result != nullptr) {
        result->vt = VT_DISPATCH;
        result->pdispVal = object.Detach();
    }
    return made;
}

void ScriptHost::onEvent(const std::wstring& procedure, DISPPARAMS& parameters) {
    ComPtr<IDispatch> script;
    std::wstring name = procedure;
    LPOLESTR names = name.data();
    DISPID id = 0;
    if (SUCCEEDED(script_->GetScriptDispatch(nullptr, &script)) &&
        SUCCEEDED(script->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id))) {
        script->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                       nullptr, nullptr);
    }
}

int runFile(const std::vector<std::wstring>& words) {
    if (words.size() < 2) {
        print(stderr, L"script_host FILE [ARGUMENT...]");
        return 2;
    }
    std::ifstream file(fromWide(words[1]), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const bool javaScript = words[1].ends_with(L".js");
    ScriptHost host({words.begin() + 2, words.end()});
    const BoxReader boxes([](const std::wstring& box, const std::string& icon) {
        print(stdout, L"[" + toWide(icon) + L"] " + box);
    });
    return host.run(javaScript ? L"JScript" : L"VBScript", toWide(text));
}

}  // namespace
}  // namespace marlune

int main() {
    int count = 0;
    wchar_t** const given = CommandLineToArgvW(GetCommandLineW(), &count);
    _setmode(_fileno(stdout), _O_BINARY);
    OleInitialize(nullptr);
    const int result = marlune::runFile({given, given + count});
    OleUninitialize();
    return result;
}
