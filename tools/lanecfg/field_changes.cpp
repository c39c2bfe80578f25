#include "field_changes.h"

#include "block/register_word.h"
#include "rate_table_rows.h"

#include <boost/algorithm/string/join.hpp>

namespace sable_lanecfg::tool {
namespace {

/// A value of one rate and of the rate before it; one of them in the first rate.
std::string change(const WriteOverRates& writes, std::size_t rate, std::uint32_t bits,
                   unsigned offset, std::string (*text)(std::uint32_t)) {
    const auto valueAt = [&](std::size_t index) {
        return text((writes[index]->value & bits) >> offset);
    };
    return rate == 0 ? valueAt(0) : valueAt(rate - 1) + " -> " + valueAt(rate);
}

std::string decimal(std::uint32_t value) {
    return std::to_string(value);
}

/// The bits that differ from the rate before, in the first rate those that any rate changes.
std::uint32_t changedBits(const WriteOverRates& writes, std::size_t rate) {
    const std::uint32_t written = writes[rate]->mask.value_or(~std::uint32_t{0});
    if (rate > 0) {
        return written & (writes[rate]->value ^ writes[rate - 1]->value);
    }
    std::uint32_t bits = 0;
    for (const RegisterWrite* const write : writes) {
        bits |= write->value ^ writes.front()->value;
    }
    return written & bits;
}

/// "PLL_CFG.DIVIDER" without its register.
std::string shortName(const std::string& field) {
    return field.substr(field.find('.') + 1);
}

}  // namespace

std::string fieldChanges(const WriteOverRates& writes, std::size_t rate,
                         const std::map<std::string, std::vector<int>>& fields) {
    const std::uint32_t written = writes[rate]->mask.value_or(~std::uint32_t{0});
    std::uint32_t remaining = changedBits(writes, rate);
    const std::uint32_t changed = remaining;
    std::vector<std::string> parts;
    for (const auto& [name, offsetAndWidth] : fields) {
        const fieldPlace place = placeOfField(offsetAndWidth);
        const std::uint32_t bits = place.mask << place.offset;
        if ((changed & bits) != 0) {
            parts.push_back(shortName(name) + " " +
                            change(writes, rate, bits & written, place.offset, decimal));
            remaining &= ~bits;
        }
    }
    if (remaining != 0) {
        parts.push_back("bits " + hexadecimalWord(remaining) + " " +
                        change(writes, rate, remaining, 0, hexadecimalWord));
    }
    return boost::algorithm::join(parts, ", ");
}

}  // namespace sable_lanecfg::tool
