#include "rate_places.h"

#include <boost/algorithm/string/join.hpp>

#include <cstddef>

namespace sable_lanecfg::tool {
namespace {

/// An element by its number, null beyond the list.
template <class Element>
const Element* elementAt(const std::vector<Element>& list, int number) {
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < list.size() ? &list[index] : nullptr;
}

}  // namespace

std::set<RatePlace> placesOf(const std::vector<channelUsageInfo>& usage) {
    std::set<RatePlace> places;
    for (const channelUsageInfo& channel : usage) {
        for (const bool isReceive : {false, true}) {
            for (const int lane : isReceive ? channel.rx : channel.tx) {
                for (const int rate : channel.rates) {
                    places.insert({lane, isReceive, rate});
                }
            }
        }
    }
    return places;
}

const ParameterValues* valuesAt(const userParamStore& params, const RatePlace& at) {
    const auto* const lanes = elementAt(params, at.isReceive ? 1 : 0);
    const auto* const rates = lanes == nullptr ? nullptr : elementAt(*lanes, at.lane);
    return rates == nullptr ? nullptr : elementAt(*rates, at.rate);
}

std::string directionOf(const RatePlace& at) {
    return at.isReceive ? "RX" : "TX";
}

std::string placeText(const RatePlace& at) {
    return "lane " + std::to_string(at.lane) + " " + directionOf(at);
}

std::string listed(const std::set<int>& numbers) {
    std::vector<std::string> texts;
    for (const int number : numbers) {
        texts.push_back(std::to_string(number));
    }
    return boost::algorithm::join(texts, ", ");
}

std::string counted(const std::string& noun, const std::set<int>& numbers) {
    return noun + (numbers.size() == 1 ? " " : "s ") + listed(numbers);
}

}  // namespace sable_lanecfg::tool
