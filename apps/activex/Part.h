// One group of interfaces of a COM object. An object is made of parts, each a class of its own;
// they all answer for the identity and the life of the whole.
#pragma once

#include <windows.h>
// After windows.h:
#include <unknwn.h>

namespace marlune::activex {

template <class... Interfaces>
class Part : public Interfaces... {
public:
    // whole: the object that the part belongs to, or what that object is aggregated into. It
    // outlives the part.
    explicit Part(IUnknown& whole) : whole_(whole) {}
    Part(const Part&) = delete;
    Part& operator=(const Part&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        return whole_.QueryInterface(iid, result);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return whole_.AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return whole_.Release(); }

protected:
    ~Part() = default;

private:
    IUnknown& whole_;
};

}  // namespace marlune::activex
