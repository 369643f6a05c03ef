// One control, as COM sees it: its identity, its life, and the parts that it is made of.
#pragma once

#include <windows.h>

#include <memory>

#include "Automation.h"
#include "ConnectionPoint.h"
#include "EventSource.h"
#include "FormHost.h"
#include "InPlace.h"
#include "Library.h"
#include "OleObject.h"
#include "Persistence.h"
#include "Picture.h"
#include "Safety.h"
#include "View.h"
#include "marlune/GpsControl.h"

namespace marlune::activex {

class ControlObject {
public:
    // Makes a control and asks it for an interface. outer: what it is aggregated into, or null.
    static HRESULT create(IUnknown* outer, REFIID iid, void** result);

    ControlObject(const ControlObject&) = delete;
    ControlObject& operator=(const ControlObject&) = delete;

    // Held while a member runs. An event handler may let the last reference go: that ends the
    // connection at once, but what the running member stands on stays until it has returned.
    class RunningCall {
    public:
        explicit RunningCall(ControlObject& object) : object_(object) { ++object_.runningCalls_; }
        RunningCall(const RunningCall&) = delete;
        RunningCall& operator=(const RunningCall&) = delete;
        ~RunningCall();

        // Null once the last reference was let go.
        [[nodiscard]] GpsControl* control() const { return object_.control_.get(); }
        // Whether another member waits for the receiver right now.
        [[nodiscard]] bool isLineTaken() const { return object_.host_.isBetweenReads(); }

    private:
        ControlObject& object_;
    };

private:
    // The identity that counts the references; the parts' own lead to it, or to the outer object.
    class Identity : public IUnknown {
    public:
        explicit Identity(ControlObject& object) : object_(object) {}
        Identity(const Identity&) = delete;
        Identity& operator=(const Identity&) = delete;
        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
        ULONG STDMETHODCALLTYPE AddRef() override;
        ULONG STDMETHODCALLTYPE Release() override;

    private:
        ControlObject& object_;
    };

    explicit ControlObject(IUnknown* outer);
    ~ControlObject() = default;

    [[nodiscard]] IUnknown* find(REFIID iid);
    void letGo();

    LibraryUse use_;
    Identity identity_;
    ULONG references_ = 1;
    int runningCalls_ = 0;

    Picture picture_;
    ConnectionPoints connectionPoints_;
    Persistence persistence_;
    Safety safety_;
    View view_;
    InPlace inPlace_;
    OleObject ole_;
    FormHost host_;
    EventSource events_;
    std::unique_ptr<GpsControl> control_;
    Automation automation_;
};

}  // namespace marlune::activex
