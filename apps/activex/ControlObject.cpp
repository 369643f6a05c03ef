#include "ControlObject.h"

#include <array>
#include <exception>
#include <new>

#include "Errors.h"

namespace marlune::activex {

HRESULT ControlObject::create(IUnknown* outer, REFIID iid, void** result) {
    try {
        auto* const object = new ControlObject(outer);
        HRESULT made = object->automation_.loadTypes();
        if (SUCCEEDED(made)) {
            made = object->identity_.QueryInterface(iid, result);
        }
        object->identity_.Release();
        return made;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (const std::exception& error) {
        return refuse(E_FAIL, error.what());
    }
}

ControlObject::ControlObject(IUnknown* outer)
    : identity_(*this),
      connectionPoints_(outer != nullptr ? *outer : identity_),
      persistence_(outer != nullptr ? *outer : identity_),
      safety_(outer != nullptr ? *outer : identity_),
      view_(outer != nullptr ? *outer : identity_, picture_),
      inPlace_(outer != nullptr ? *outer : identity_, picture_),
      ole_(outer != nullptr ? *outer : identity_, picture_, inPlace_, connectionPoints_.events()),
      host_(inPlace_),
      events_(connectionPoints_.events()),
      control_(std::make_unique<GpsControl>(host_, events_)),
      automation_(outer != nullptr ? *outer : identity_, *this) {}

IUnknown* ControlObject::find(REFIID iid) {
    struct Offer {
        const IID& iid;
        IUnknown* part;
    };
    const auto offers = std::to_array<Offer>({
        {__uuidof(_GpsControl), static_cast<_GpsControl*>(&automation_)},
        {__uuidof(IDispatch), static_cast<_GpsControl*>(&automation_)},
        {__uuidof(ISupportErrorInfo), static_cast<ISupportErrorInfo*>(&automation_)},
        {__uuidof(IProvideClassInfo), static_cast<IProvideClassInfo2*>(&automation_)},
        {__uuidof(IProvideClassInfo2), static_cast<IProvideClassInfo2*>(&automation_)},
        {__uuidof(IConnectionPointContainer), &connectionPoints_},
        {__uuidof(IOleObject), static_cast<IOleObject*>(&ole_)},
        {__uuidof(IOleControl), static_cast<IOleControl*>(&ole_)},
        {__uuidof(IOleWindow), static_cast<IOleInPlaceObject*>(&inPlace_)},
        {__uuidof(IOleInPlaceObject), static_cast<IOleInPlaceObject*>(&inPlace_)},
        {__uuidof(IOleInPlaceActiveObject), static_cast<IOleInPlaceActiveObject*>(&inPlace_)},
        {__uuidof(IViewObject), &view_},
        {__uuidof(IViewObject2), &view_},
        {__uuidof(IPersist), static_cast<IPersistStreamInit*>(&persistence_)},
        {__uuidof(IPersistStreamInit), static_cast<IPersistStreamInit*>(&persistence_)},
        {__uuidof(IPersistPropertyBag), static_cast<IPersistPropertyBag*>(&persistence_)},
        {__uuidof(IPersistStorage), static_cast<IPersistStorage*>(&persistence_)},
        {IID_IObjectSafety, &safety_},
        {__uuidof(IUnknown), &identity_},
    });
    for (const Offer& offer : offers) {
        if (offer.iid == iid) {
            return offer.part;
        }
    }
    return nullptr;
}

// Closes the port or device now, also in the middle of a member, but for one that is reading.
void ControlObject::letGo() {
    if (host_.isBetweenReads()) {
        host_.stop();  // and its member comes back to here when it has returned
        return;
    }
    references_ = 1;  // what is released in here may come back for a moment
    control_.reset();
    if (runningCalls_ == 0) {
        delete this;
    } else {
        references_ = 0;
    }
}

ControlObject::RunningCall::~RunningCall() {
    if (--object_.runningCalls_ == 0 && object_.references_ == 0) {
        object_.letGo();
    }
}

HRESULT ControlObject::Identity::QueryInterface(REFIID iid, void** result) {
    if (result == nullptr) {
        return E_POINTER;
    }
    IUnknown* const part = object_.find(iid);
    *result = part;
    if (part == nullptr) {
        return E_NOINTERFACE;
    }
    part->AddRef();
    return S_OK;
}

ULONG ControlObject::Identity::AddRef() {
    return ++object_.references_;
}

ULONG ControlObject::Identity::Release() {
    const ULONG left = --object_.references_;
    if (left == 0) {
        object_.letGo();
    }
    return left;
}

}  // namespace marlune::activex
