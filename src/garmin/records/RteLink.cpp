#include "garmin/records/RteLink.h"

#include <algorithm>

#include "base/CodePage.h"
#include "garmin/values/ByteAccess.h"
#include "garmin/values/Nombre.h"

namespace marlune {
namespace {

// D210: class, subclass, ident.
constexpr std::size_t kSubclassAt = 2;
constexpr std::size_t kIdentAt = 20;
constexpr std::size_t kIdentLength = 9;

}  // namespace

void RteLink::GetAttributes(std::string_view /*format*/, std::span<const std::uint8_t> data) {
    linkClass = Nombre::BytestoInt(data);
    const Bytes bytes = bytesAt(data, kSubclassAt, subclass.size());
    std::copy(bytes.begin(), bytes.end(), subclass.begin());
    ident = fromAnsi(untilZero(data, kIdentAt, data.size()));
}

std::vector<std::uint8_t> RteLink::Coder(std::string_view /*format*/) const {
    // Class 0x00FF is a direct link. The subclass ends in a zero byte, not in 255 as the document
    // has it: units have always been sent it so, and take it.
    constexpr std::array<std::uint8_t, kIdentAt> kDirectLink = {
        255, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 0};
    std::string name = toAnsi(ident);
    name.resize(kIdentLength, ' ');
    // The last byte stays zero and ends the ident.
    std::vector<std::uint8_t> record(kIdentAt + kIdentLength + 1);
    putBytes(record, 0, kDirectLink);
    putText(record, kIdentAt, name);
    return record;
}

std::string RteLink::getIdent() const {
    return "L;RteLink " + ident;
}

}  // namespace marlune
