#include "nmea/mlr/BlocMLR.h"

#include <algorithm>

namespace marlune {

std::size_t BlocMLR::recordCount() const {
    return text_.size() < kHeaderLength ? 0U : static_cast<std::uint8_t>(text_[kHeaderLength - 1]);
}

std::size_t BlocMLR::recordLength() const {
    const std::size_t count = recordCount();
    if (count == 0 || (text_.size() - kHeaderLength) % count != 0) {
        return 0;
    }
    return (text_.size() - kHeaderLength) / count;
}

std::vector<std::string_view> BlocMLR::Decoder(std::int16_t recordLength) const {
    const auto length = static_cast<std::size_t>(std::max<std::int16_t>(recordLength, 0));
    std::vector<std::string_view> records;
    for (std::size_t i = 0; i < recordCount(); ++i) {
        const std::size_t start = std::min(kHeaderLength + i * length, text_.size());
        records.push_back(std::string_view(text_).substr(start, length));
    }
    return records;
}

}  // namespace marlune
