#include "exact_number.h"

#include <array>
#include <charconv>
#include <cmath>

namespace sable_lanecfg::tool {
namespace {

template <class Number>
std::string textOf(Number number) {
    if (std::isnan(number)) {
        return "nan";  // of either sign
    }
    std::array<char, 32> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end};
}

}  // namespace

std::string exactText(float number) {
    return textOf(number);
}

std::string exactText(double number) {
    return textOf(number);
}

Json exactJson(double number) {
    return std::isfinite(number) ? Json(number) : Json(exactText(number));
}

}  // namespace sable_lanecfg::tool
