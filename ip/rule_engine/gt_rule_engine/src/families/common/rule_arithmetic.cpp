#include "families/common/rule_arithmetic.h"

#include <stdexcept>
#include <string>

namespace sable_lanecfg {

namespace {

constexpr double beyondUnsigned = 4294967296.0;

}  // namespace

unsigned int truncated(double value) {
    const bool fits = value > -1.0 && value < beyondUnsigned;
    return fits ? static_cast<unsigned int>(value) : 0U;
}

unsigned int quotient(unsigned int dividend, unsigned int divisor, std::string_view divisorName) {
    if (divisor == 0) {
        throw std::domain_error("division by zero: " + std::string(divisorName) + " is 0");
    }
    return dividend / divisor;
}

}  // namespace sable_lanecfg
