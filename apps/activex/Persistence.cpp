#include "Persistence.h"

#include <array>

#include "marlune_com.h"

namespace marlune::activex {
namespace {

// The library's name, and the number of the format.
constexpr std::array<char, 8> kMark = {'M', 'r', 'l', 'u', 'n', 'e', 0, 1};

// Property bags and storages: nothing is read or written, but there must be one.
HRESULT given(const void* medium) {
    return medium != nullptr ? S_OK : E_POINTER;
}

}  // namespace

HRESULT Persistence::GetClassID(CLSID* id) {
    if (id == nullptr) {
        return E_POINTER;
    }
    *id = __uuidof(::GpsControl);
    return S_OK;
}

HRESULT Persistence::Load(IStream* stream) {
    if (stream == nullptr) {
        return E_POINTER;
    }
    std::array<char, kMark.size()> mark{};
    ULONG count = 0;
    const HRESULT read = stream->Read(mark.data(), mark.size(), &count);
    if (FAILED(read)) {
        return read;
    }
    return count == 0 || mark == kMark ? S_OK : STG_E_INVALIDHEADER;
}

HRESULT Persistence::Save(IStream* stream, BOOL /*clear*/) {
    if (stream == nullptr) {
        return E_POINTER;
    }
    ULONG count = 0;
    const HRESULT written = stream->Write(kMark.data(), kMark.size(), &count);
    return SUCCEEDED(written) && count != kMark.size() ? STG_E_MEDIUMFULL : written;
}

HRESULT Persistence::GetSizeMax(ULARGE_INTEGER* size) {
    if (size == nullptr) {
        return E_POINTER;
    }
    size->QuadPart = kMark.size();
    return S_OK;
}

HRESULT Persistence::Load(IPropertyBag* bag, IErrorLog* /*log*/) {
    return given(bag);
}

HRESULT Persistence::Save(IPropertyBag* bag, BOOL /*clear*/, BOOL /*all*/) {
    return given(bag);
}

HRESULT Persistence::InitNew(IStorage* storage) {
    return given(storage);
}

HRESULT Persistence::Load(IStorage* storage) {
    return given(storage);
}

HRESULT Persistence::Save(IStorage* storage, BOOL /*same*/) {
    return given(storage);
}

}  // namespace marlune::activex
