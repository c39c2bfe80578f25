#include "families/sxb/sxb_binary_text.h"

#include <charconv>

namespace sable_lanecfg {

unsigned int leadingBinaryNumber(std::string_view text) {
    unsigned int number = 0;
    // A text without a number and a number that is too large leave it as it is.
    std::from_chars(text.data(), text.data() + text.size(), number, 2);
    return number;
}

}  // namespace sable_lanecfg
