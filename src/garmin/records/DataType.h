// One waypoint data type: where its fields lie in a record (resources/WaypointLayouts.h).
#pragma once

#include <cstddef>
#include <string_view>

namespace marlune {

class DataType {
public:
    struct Field {
        int offset = -1;
        int length = -1;

        [[nodiscard]] constexpr bool exists() const { return offset >= 0; }
        // Whether the field is a text that ends at a zero byte.
        [[nodiscard]] constexpr bool isOpen() const { return length == 0; }
        [[nodiscard]] constexpr std::size_t at() const { return static_cast<std::size_t>(offset); }
        [[nodiscard]] constexpr std::size_t size() const {
            return static_cast<std::size_t>(length);
        }
    };

    int number = 0;  // 108 for "D108"
    Field ident;
    Field latitude;
    Field longitude;
    Field comment;
    Field altitude;
    Field symbol;
    Field display;
    std::size_t total = 0;  // length of an encoded record

    // The data type of a name such as "D108". Raises the index error when it has no row.
    static const DataType& Lire(std::string_view format);
};

}  // namespace marlune
