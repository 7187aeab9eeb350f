#pragma once
// Integer division that rounds toward negative infinity (and up), for the date
// arithmetic and the grid's pixel rows, whose values can be negative.

#include <cstdint>

namespace quorvane {

inline std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

inline std::int64_t ceilDiv(std::int64_t a, std::int64_t b) { return -floorDiv(-a, b); }

} // namespace quorvane
