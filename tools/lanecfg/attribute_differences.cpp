#include "attribute_differences.h"

#include "rate_table_rows.h"

#include <algorithm>
#include <charconv>

namespace sable_lanecfg::tool {
namespace {

const std::string* valueIn(const textMap& values, const std::string& name) {
    const auto found = values.find(name);
    return found == values.end() ? nullptr : &found->second;
}

std::optional<std::string> copyOf(const std::string* value) {
    return value == nullptr ? std::nullopt : std::optional(*value);
}

/// The fields of the register behind a name, null when there is none.
const FieldPlaces* fieldsBehind(const std::string& name,
                                const std::map<std::string, attributeInfo>& registers) {
    auto found = registers.find(name);
    if (found == registers.end()) {
        found = registers.find(name.substr(name.find('_') + 1));
    }
    return found == registers.end() ? nullptr : &found->second.fields;
}

std::vector<FieldDifference> fieldsOf(const ValueDifference& difference, const NamedValues& first,
                                      const NamedValues& second) {
    if (!difference.first || !difference.second) {
        return {};
    }
    const auto firstWord = registerWord(*difference.first);
    const auto secondWord = registerWord(*difference.second);
    const FieldPlaces* const firstFields = fieldsBehind(difference.name, first.registers);
    const FieldPlaces* const secondFields = fieldsBehind(difference.name, second.registers);
    const bool areWords = firstWord && secondWord && firstFields && secondFields;
    return areWords ? fieldDifferences({*firstWord, *firstFields}, {*secondWord, *secondFields})
                    : std::vector<FieldDifference>();
}

/// For people the word, for JSON the value as the library gives it.
Cell valueCell(const std::optional<std::string>& value) {
    if (!value) {
        return {"", nullptr};
    }
    const std::string word = hexadecimalOf(*value);
    return {word.empty() ? *value : word, *value};
}

std::string changesOf(const ValueDifference& difference) {
    if (!difference.second) {
        return "only in the first";
    }
    return difference.first ? textOf(difference.fields) : "only in the second";
}

Json fieldDocument(const std::vector<FieldDifference>& fields) {
    Json list = Json::array();
    const auto numberOrNull = [](const std::optional<std::uint32_t>& value) {
        return value ? Json(*value) : Json();
    };
    for (const FieldDifference& field : fields) {
        list.push_back({{"field", nameOf(field)},
                        {"first", numberOrNull(field.first)},
                        {"second", numberOrNull(field.second)}});
    }
    return list;
}

std::string summaryOf(const std::vector<ValueDifference>& differences, const std::string& firstName,
                      const std::string& secondName) {
    const auto countOf = [&differences](const auto& isCounted) {
        return std::to_string(std::count_if(differences.begin(), differences.end(), isCounted));
    };
    const std::string onlyFirst = countOf([](const auto& row) { return !row.second; });
    const std::string onlySecond = countOf([](const auto& row) { return !row.first; });
    const std::string changed = countOf([](const auto& row) { return row.first && row.second; });
    return "From " + firstName + " to " + secondName + ": " + changed + " changed, " + onlyFirst +
           " only in the first, " + onlySecond + " only in the second.";
}

}  // namespace

std::optional<std::uint32_t> registerWord(const std::string& value) {
    std::uint32_t word = 0;
    const char* const end = value.data() + value.size();
    const auto [rest, fault] = std::from_chars(value.data(), end, word);
    return fault == std::errc() && rest == end ? std::optional(word) : std::nullopt;
}

std::string hexadecimalOf(const std::string& value) {
    const std::optional<std::uint32_t> word = registerWord(value);
    return word ? hexadecimalWord(*word) : std::string();
}

std::vector<ValueDifference> valueDifferences(const NamedValues& first, const NamedValues& second) {
    textMap names = first.values;
    names.insert(second.values.begin(), second.values.end());
    std::vector<ValueDifference> differences;
    for (const auto& [name, ignored] : names) {
        ValueDifference difference{std::nullopt,
                                   name,
                                   copyOf(valueIn(first.values, name)),
                                   copyOf(valueIn(second.values, name)),
                                   {}};
        if (difference.first != difference.second) {
            difference.fields = fieldsOf(difference, first, second);
            differences.push_back(std::move(difference));
        }
    }
    return differences;
}

Answer answerOf(const std::vector<ValueDifference>& differences, bool ofChannels,
                const std::string& firstName, const std::string& secondName) {
    Answer answer;
    answer.table.columns = {"name", "first", "second", "changes"};
    if (ofChannels) {
        answer.table.columns.insert(answer.table.columns.begin(), "channel");
    }
    for (const ValueDifference& difference : differences) {
        std::vector<Cell> row = {Cell(difference.name), valueCell(difference.first),
                                 valueCell(difference.second),
                                 Cell(changesOf(difference), fieldDocument(difference.fields))};
        if (ofChannels) {
            row.insert(row.begin(), Cell(difference.channel.value_or(0)));
        }
        answer.table.rows.push_back(std::move(row));
    }
    answer.text = differences.empty() ? "" : alignedText(withShortTexts(answer.table));
    answer.remarks = {summaryOf(differences, firstName, secondName)};
    return answer;
}

}  // namespace sable_lanecfg::tool
