#include "parameter_doubts.h"

#include "families.h"
#include "families/common/data_widths.h"
#include "families/sxb/sxb_data_selects.h"
#include "packing/packing_rows.h"
#include "rate_places.h"
#include "snapshot_rows.h"
#include "table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <set>
#include <tuple>

namespace sable_lanecfg::tool {
namespace {

// Each gives what is wanted in place of a value that can't be meant, else an empty text. A value of
// another type is the library's to refuse.

std::string wantedAboveZero(const ruleValue& value) {
    const auto* const number = boost::get<double>(&value);
    const bool canBeMeant = number == nullptr || (std::isfinite(*number) && *number > 0.0);
    return canBeMeant ? std::string() : "a number above 0";
}

template <const auto& codes>
std::string wantedWidth(const ruleValue& value) {
    const auto* const width = boost::get<unsigned int>(&value);
    std::set<int> known;
    for (const auto& [bits, code] : codes) {
        if (width == nullptr || *width == bits) {
            return {};
        }
        known.insert(static_cast<int>(bits));
    }
    return "one of " + listed(known);
}

template <const auto& codes>
std::vector<std::string> wordsOf() {
    std::vector<std::string> words;
    for (const auto& [word, code] : codes) {
        words.emplace_back(word);
    }
    return words;
}

template <const auto& codes>
std::string wantedWord(const ruleValue& value) {
    const auto* const text = boost::get<std::string>(&value);
    const std::vector<std::string> known = wordsOf<codes>();
    const bool isKnown =
        text == nullptr || std::find(known.begin(), known.end(), *text) != known.end();
    return isKnown ? std::string() : "one of " + listed(known);
}

/// A parameter by what follows its direction.
struct CheckedParameter {
    const char* ending;
    std::string (*wanted)(const ruleValue& value);
};

constexpr std::array<CheckedParameter, 6> checkedParameters = {{
    {"_LINE_RATE", wantedAboveZero},
    {"_REFCLK_FREQUENCY", wantedAboveZero},
    {"_USER_DATA_WIDTH", wantedWidth<plainWidthCodes>},
    {"_INT_DATA_WIDTH", wantedWidth<internalWidthCodes>},
    {"_DATA_ENCODING", wantedWord<transmitDataSelects>},
    {"_DATA_DECODING", wantedWord<receiveDataSelects>},
}};

/// Lane and direction, number of the checked parameter, and what is said of its value.
using Doubt = std::tuple<int, bool, std::size_t, std::string>;

std::map<Doubt, std::set<int>> ratesOfDoubts(const std::vector<channelUsageInfo>& usage,
                                             const userParamStore& params) {
    std::map<Doubt, std::set<int>> rates;
    for (const RatePlace& at : placesOf(usage)) {
        const ParameterValues* const values = valuesAt(params, at);
        for (std::size_t row = 0; values != nullptr && row < checkedParameters.size(); ++row) {
            const std::string name = directionOf(at) + checkedParameters[row].ending;
            const ruleValue* const value = elementOf(*values, name);
            const std::string wanted =
                value == nullptr ? std::string() : checkedParameters[row].wanted(*value);
            if (!wanted.empty()) {
                const std::string given = jsonText(valueCell({boost::none, *value}).value);
                const std::string text =
                    "the parameter \"" + name + "\" must be " + wanted + ", and is " + given;
                rates[{at.lane, at.isReceive, row, text}].insert(at.rate);
            }
        }
    }
    return rates;
}

}  // namespace

std::vector<std::string> parameterDoubts(const std::vector<channelUsageInfo>& usage,
                                         const userParamStore& params) {
    std::vector<std::string> doubts;
    for (const auto& [doubt, rates] : ratesOfDoubts(usage, params)) {
        const auto& [lane, isReceive, row, text] = doubt;
        doubts.push_back(placeText({lane, isReceive, 0}) + ", " + counted("rate", rates) + ": " +
                         text + ". The rules run with it all the same.");
    }
    return doubts;
}

std::vector<std::string> encodingWords() {
    return wordsOf<transmitDataSelects>();
}

}  // namespace sable_lanecfg::tool
