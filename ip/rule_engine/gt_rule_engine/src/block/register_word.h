#pragma once

#include <cstddef>
#include <vector>

namespace sable_lanecfg {

/// Place of a field in its register word.
struct fieldPlace {
    unsigned int mask = 0;  ///< bits of the field's value that count
    unsigned int offset = 0;
};

/// Place of a field from its { bit offset, width } in the register database. A missing number
/// counts 0. A width of 32 or more covers the whole word; a place that can't lie in a word (a
/// negative number, an offset of 32 or more) holds nothing.
inline fieldPlace placeOfField(const std::vector<int>& offsetAndWidth) {
    constexpr int wordBits = 32;
    const auto numberAt = [&offsetAndWidth](std::size_t index) {
        return index < offsetAndWidth.size() ? offsetAndWidth[index] : 0;
    };
    const int offset = numberAt(0);
    const int width = numberAt(1);
    if (offset < 0 || offset >= wordBits || width < 0) {
        return {};
    }
    const unsigned int mask = width >= wordBits ? ~0U : (1U << static_cast<unsigned>(width)) - 1U;
    return {mask, static_cast<unsigned>(offset)};
}

/// The word with a field's bits replaced by those of `value`.
inline unsigned int wordWithField(unsigned int word, fieldPlace place, unsigned int value) {
    return (word & ~(place.mask << place.offset)) | ((value & place.mask) << place.offset);
}

}  // namespace sable_lanecfg
