#pragma once

#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace sable_lanecfg {

/// The value without its fraction; 0 when it is not finite or out of range.
unsigned int truncated(double value);

/// Integer division. Throws std::domain_error, naming the divisor's variable, when it is 0.
unsigned int quotient(unsigned int dividend, unsigned int divisor, std::string_view divisorName);

/// Field codes by what they stand for.
template <class Key, std::size_t size>
using code_table = std::array<std::pair<Key, unsigned int>, size>;

/// Code of a value; 0 for one that the table lacks.
template <class Table, class Value>
unsigned int codeOf(const Table& table, const Value& value) {
    for (const auto& row : table) {
        if (row.first == value) {
            return row.second;
        }
    }
    return 0;
}

}  // namespace sable_lanecfg
