#pragma once

#include <array>
#include <string>

namespace lanecfg_test {

/// Names of the two directions for rules that exist for both.
struct TestedSide {
    std::string word;
    std::string coding;
};

inline const std::array<TestedSide, 2>& testedSides() {
    static const std::array<TestedSide, 2> sides{
        {{"TX", "TX_DATA_ENCODING"}, {"RX", "RX_DATA_DECODING"}}};
    return sides;
}

}  // namespace lanecfg_test
