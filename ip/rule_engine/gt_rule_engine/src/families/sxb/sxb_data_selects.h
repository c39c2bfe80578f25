#pragma once

#include "families/common/rule_arithmetic.h"

#include <string_view>

namespace sable_lanecfg {

/// Codes of the data path by the words of TX_DATA_ENCODING and RX_DATA_DECODING, which are the same
/// in all families.
inline constexpr code_table<std::string_view, 10> transmitDataSelects{{{"128B130B", 0},
                                                                       {"8B10B", 1},
                                                                       {"RAW", 2},
                                                                       {"64B66B_ASYNC", 3},
                                                                       {"64B66B_ASYNC_CAUI", 3},
                                                                       {"64B66B_SYNC", 4},
                                                                       {"64B67B", 4},
                                                                       {"64B66B_CAUI", 4},
                                                                       {"64B67B_CAUI", 4},
                                                                       {"PRBS", 5}}};
inline constexpr code_table<std::string_view, 9> receiveDataSelects{{{"128B130B", 0},
                                                                     {"8B10B", 1},
                                                                     {"RAW", 2},
                                                                     {"64B66B_SYNC", 3},
                                                                     {"64B67B", 3},
                                                                     {"64B66B_CAUI", 3},
                                                                     {"64B67B_CAUI", 3},
                                                                     {"64B66B_ASYNC", 5},
                                                                     {"64B66B_ASYNC_CAUI", 5}}};

}  // namespace sable_lanecfg
