#include "field_changes.h"

#include "block/register_word.h"
#include "rate_table_rows.h"

#include <boost/algorithm/string/join.hpp>

#include <set>

namespace sable_lanecfg::tool {
namespace {

/// "PLL_CFG.DIVIDER" without its register.
std::string shortName(const std::string& field) {
    return field.substr(field.find('.') + 1);
}

std::uint32_t bitsOf(const fieldPlace& place) {
    return place.mask << place.offset;
}

std::optional<std::uint32_t> valueOf(const FieldedWord& word, const std::string& field) {
    const auto found = word.fields.find(field);
    if (found == word.fields.end()) {
        return std::nullopt;
    }
    const fieldPlace place = placeOfField(found->second);
    return (word.word & bitsOf(place)) >> place.offset;
}

std::uint32_t bitsInNoField(const FieldedWord& word) {
    std::uint32_t bits = word.word;
    for (const auto& [name, offsetAndWidth] : word.fields) {
        bits &= ~bitsOf(placeOfField(offsetAndWidth));
    }
    return bits;
}

std::set<std::string> namesOfEither(const FieldPlaces& first, const FieldPlaces& second) {
    std::set<std::string> names;
    for (const FieldPlaces* const fields : {&first, &second}) {
        for (const auto& [name, offsetAndWidth] : *fields) {
            names.insert(name);
        }
    }
    return names;
}

std::string textOf(const FieldDifference& difference, const std::optional<std::uint32_t>& value) {
    if (!value) {
        return "none";
    }
    return difference.unplaced ? hexadecimalWord(*value) : std::to_string(*value);
}

std::uint32_t writtenBits(const RegisterWrite& write) {
    return write.mask.value_or(~std::uint32_t{0});
}

/// The bits that any rate changes.
std::uint32_t everChangingBits(const WriteOverRates& writes) {
    std::uint32_t bits = 0;
    for (const RegisterWrite* const write : writes) {
        bits |= write->value ^ writes.front()->value;
    }
    return bits;
}

}  // namespace

std::vector<FieldDifference> fieldDifferences(const FieldedWord& first, const FieldedWord& second) {
    std::vector<FieldDifference> differences;
    for (const std::string& name : namesOfEither(first.fields, second.fields)) {
        const auto firstValue = valueOf(first, name);
        const auto secondValue = valueOf(second, name);
        if (firstValue != secondValue) {
            differences.push_back({shortName(name), std::nullopt, firstValue, secondValue});
        }
    }
    const std::uint32_t firstRest = bitsInNoField(first);
    const std::uint32_t secondRest = bitsInNoField(second);
    if (const std::uint32_t bits = firstRest ^ secondRest; bits != 0) {
        differences.push_back({"", bits, firstRest & bits, secondRest & bits});
    }
    return differences;
}

std::string nameOf(const FieldDifference& difference) {
    return difference.unplaced ? "bits " + hexadecimalWord(*difference.unplaced) : difference.field;
}

std::string textOf(const std::vector<FieldDifference>& differences) {
    std::vector<std::string> parts;
    for (const FieldDifference& difference : differences) {
        parts.push_back(nameOf(difference) + " " + textOf(difference, difference.first) + " -> " +
                        textOf(difference, difference.second));
    }
    return boost::algorithm::join(parts, ", ");
}

std::string fieldChanges(const WriteOverRates& writes, std::size_t rate,
                         const FieldPlaces& fields) {
    const std::uint32_t written = writtenBits(*writes[rate]);
    if (rate > 0) {
        return textOf(fieldDifferences({writes[rate - 1]->value & written, fields},
                                       {writes[rate]->value & written, fields}));
    }
    const std::uint32_t value = writes.front()->value & written;
    const std::uint32_t changing = everChangingBits(writes) & written;
    std::vector<std::string> parts;
    for (const FieldDifference& difference :
         fieldDifferences({value, fields}, {value ^ changing, fields})) {
        parts.push_back(nameOf(difference) + " " + textOf(difference, difference.first));
    }
    return boost::algorithm::join(parts, ", ");
}

}  // namespace sable_lanecfg::tool
