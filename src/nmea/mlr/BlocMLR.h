// A data block of an MLR receiver, one character a byte:
//
//   1        start mark 0x8B
//   2 to 5   header
//   6        number of records, 0 to 255
//   7 on     the records, all of one length
//
// On the line a carriage return and line feed follow; they are not part of the text here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace marlune {

class BlocMLR {
public:
    static constexpr char kStartMark = '\x8B';
    static constexpr std::size_t kHeaderLength = 6;

    BlocMLR() = default;
    explicit BlocMLR(std::string text) : text_(std::move(text)) {}

    [[nodiscard]] const std::string& BlocData() const { return text_; }
    void SetBlocData(std::string text) { text_ = std::move(text); }

    // What the sixth byte says; 0 for a block without one.
    [[nodiscard]] std::size_t recordCount() const;

    // The length of a record when the block's records fill it exactly; 0 when they do not, or when
    // there are none.
    [[nodiscard]] std::size_t recordLength() const;

    // The records, each recordLength characters. Those that the block does not reach are short or
    // empty.
    [[nodiscard]] std::vector<std::string_view> Decoder(std::int16_t recordLength) const;

private:
    std::string text_;
};

}  // namespace marlune
