// COM's enumerators over a fixed list.
#pragma once

#include <windows.h>
// After windows.h:
#include <ocidl.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <utility>
#include <vector>

#include "Library.h"

namespace marlune::activex {

// Interface: the enumerator's; Raw: what it hands out. Traits::copy(const Held&) makes a Raw whose
// references are the caller's, from what the list holds.
template <class Interface, class Raw, class Held, class Traits>
class Enumerator final : public Interface {
public:
    static HRESULT create(std::vector<Held> items, Interface** result, std::size_t at = 0) {
        if (result == nullptr) {
            return E_POINTER;
        }
        *result = new Enumerator(std::move(items), at);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
        if (result == nullptr) {
            return E_POINTER;
        }
        const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(Interface);
        *result = known ? static_cast<Interface*>(this) : nullptr;
        if (known) {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG count, Raw* into, ULONG* fetched) override {
        if (into == nullptr || (fetched == nullptr && count != 1)) {
            return E_POINTER;
        }
        ULONG given = 0;
        for (; given < count && at_ < items_.size(); ++given, ++at_) {
            into[given] = Traits::copy(items_[at_]);
        }
        if (fetched != nullptr) {
            *fetched = given;
        }
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const std::size_t left = items_.size() - at_;
        at_ += std::min<std::size_t>(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        at_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(Interface** result) override {
        return create(items_, result, at_);
    }

private:
    Enumerator(std::vector<Held> items, std::size_t at) : items_(std::move(items)), at_(at) {}
    ~Enumerator() = default;

    std::vector<Held> items_;
    std::size_t at_;
    std::atomic<ULONG> references_ = 1;
    LibraryUse use_;
};

}  // namespace marlune::activex
