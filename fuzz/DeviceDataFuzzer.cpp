// A receiver's data file of any bytes: refused with a reason, or read; what is printed of it is
// read again and printed alike.
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Require.h"
#include "receivers/DeviceData.h"

namespace {

std::string printed(const marlune::receivers::DeviceData& data) {
    std::string text;
    for (const std::string& line : marlune::receivers::linesOf(data)) {
        text += line + "\n";
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    std::string first;
    try {
        first = printed(marlune::receivers::readData(bytes));
    } catch (const std::invalid_argument&) {
        return 0;
    }
    marlune::require(printed(marlune::receivers::readData(first)) == first);
    return 0;
}
