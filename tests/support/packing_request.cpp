#include "support/packing_request.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/variant.hpp>

#include <numeric>

namespace lanecfg_test {

using sable_lanecfg::channelUsageInfo;
using sable_lanecfg::gt_quad_packing;
using sable_lanecfg::laneUsageMap;
using sable_lanecfg::ruleValue;
using sable_lanecfg::textMap;
using sable_lanecfg::userParamMap;

namespace {

constexpr std::size_t lanesOfQuad = 4;

/// Values in their own types; only those that a request sets.
struct jsonConverter : boost::static_visitor<nlohmann::json> {
    nlohmann::json operator()(const boost::blank& /*value*/) const { return nullptr; }
    template <class Value>
    nlohmann::json operator()(const Value& value) const {
        return value;
    }
};

nlohmann::json jsonOf(const std::map<std::string, ruleValue>& values) {
    nlohmann::json result = nlohmann::json::object();
    for (const auto& [name, value] : values) {
        result[name] = boost::apply_visitor(jsonConverter(), value);
    }
    return result;
}

/// An absent list is told from an empty text, which would be one number.
void enterNumbers(sable_lanecfg::textMap& entry, const std::string& key,
                  const std::vector<int>& numbers) {
    std::vector<std::string> texts;
    for (const int number : numbers) {
        texts.push_back(std::to_string(number));
    }
    if (!texts.empty()) {
        entry[key] = boost::algorithm::join(texts, ",");
    }
}

template <class Element>
Element oneOf(std::mt19937& random, const std::vector<Element>& elements) {
    return elements[std::uniform_int_distribution<std::size_t>(0, elements.size() - 1)(random)];
}

std::string lanesOfDual(int dual) {
    return dual == 0 ? "lanes 0 and/or 1" : "lanes 2 and/or 3";
}

}  // namespace

RateSettings rateOf(double lineRate, const std::string& pll, double refclk,
                    const std::string& source) {
    RateSettings settings;
    settings.lineRate = lineRate;
    settings.pll = pll;
    settings.refclk = refclk;
    settings.source = source;
    return settings;
}

RateSettings tenGigabitEthernet(const std::string& source) {
    RateSettings settings = rateOf(10.3125, "LCPLL", 156.25, source);
    settings.coding = "64B66B_ASYNC";
    settings.userDataWidth = 64;
    return settings;
}

sable_lanecfg::userParamStore withReceiveBuffer(sable_lanecfg::userParamStore params) {
    if (params.size() > receive) {
        for (auto& lane : params[receive]) {
            for (auto& rate : lane) {
                rate["RX_BUFFER_MODE"] = 1U;
            }
        }
    }
    return params;
}

std::map<std::string, ruleValue> parametersOf(int direction, const RateSettings& settings) {
    const std::string word = direction == transmit ? "TX" : "RX";
    const std::string coding = direction == transmit ? "_DATA_ENCODING" : "_DATA_DECODING";
    std::map<std::string, ruleValue> parameters{
        {word + "_LINE_RATE", settings.lineRate},
        {word + "_PLL_TYPE", settings.pll},
        {word + "_REFCLK_FREQUENCY", settings.refclk},
        {word + "_REFCLK_SOURCE", settings.source},
        {word + coding, settings.coding},
        {word + "_INT_DATA_WIDTH", settings.intDataWidth},
        {word + "_USER_DATA_WIDTH", settings.userDataWidth},
        {word + "_RATE_GROUP", settings.group},
        {word + "PROGDIV_FREQ_ENABLE", settings.hasDivider},
        {word + "PROGDIV_FREQ_SOURCE", settings.dividerPll},
        {word + "PROGDIV_FREQ_VAL", settings.dividerFrequency}};
    if (direction == transmit) {
        parameters["TX_BUFFER_MODE"] = settings.bufferMode;
        parameters["TX_PIPM_ENABLE"] = settings.isInterpolating;
    }
    return parameters;
}

PackingRequest::PackingRequest()
    : userParams(2, std::vector<std::vector<std::map<std::string, ruleValue>>>(lanesOfQuad)),
      limits{{"FLCPLLRANGE_MIN", {"8.0"}},
             {"FLCPLLRANGE_MAX", {"16.375"}},
             {"FRPLLRANGE_MIN", {"4.0"}},
             {"FRPLLRANGE_MAX", {"8.0"}}} {}

void PackingRequest::enter(int direction, int lane, const std::vector<RateSettings>& rates) {
    auto& slots =
        userParams.at(static_cast<std::size_t>(direction)).at(static_cast<std::size_t>(lane));
    slots.clear();
    for (const RateSettings& rate : rates) {
        slots.push_back(parametersOf(direction, rate));
    }
}

PackingRequest& PackingRequest::add(int direction, int lane, const std::vector<RateSettings>& rates,
                                    const std::string& pin) {
    enter(direction, lane, rates);
    channelUsageInfo channel;
    (direction == transmit ? channel.tx : channel.rx) = {lane};
    (direction == transmit ? channel.txrate : channel.rxrate) = {pin};
    channel.rates.resize(rates.size());
    std::iota(channel.rates.begin(), channel.rates.end(), 0);
    channels.push_back(channel);
    return *this;
}

PackingRequest& PackingRequest::addBoth(int lane, const std::vector<RateSettings>& rates,
                                        const std::string& pin) {
    add(transmit, lane, rates, pin);
    enter(receive, lane, rates);
    channels.back().rx = {lane};
    channels.back().rxrate = {pin};
    return *this;
}

PackingRequest& PackingRequest::joinRecords() {
    const auto append = [](auto& list, const auto& added) {
        list.insert(list.end(), added.begin(), added.end());
    };
    channelUsageInfo joined;
    joined.rates = channels.front().rates;
    for (const channelUsageInfo& channel : channels) {
        append(joined.tx, channel.tx);
        append(joined.txrate, channel.txrate);
        append(joined.rx, channel.rx);
        append(joined.rxrate, channel.rxrate);
    }
    channels = {joined};
    return *this;
}

std::map<std::string, ruleValue>& PackingRequest::parametersAt(int direction, int lane, int rate) {
    return userParams.at(static_cast<std::size_t>(direction))
        .at(static_cast<std::size_t>(lane))
        .at(static_cast<std::size_t>(rate));
}

gt_quad_packing PackingRequest::packing() const {
    return gt_quad_packing(channels, {}, userParams, {}, limits);
}

std::vector<std::string> PackingRequest::reasons() const {
    return textsOf(packing().canBePacked(false));
}

nlohmann::json PackingRequest::fileForm() const {
    nlohmann::json lanes = nlohmann::json::array();
    for (const channelUsageInfo& channel : channels) {
        lanes.push_back({{"group", "A"},
                         {"tx", channel.tx},
                         {"rx", channel.rx},
                         {"txrate", channel.txrate},
                         {"rxrate", channel.rxrate},
                         {"rates", channel.rates}});
    }
    nlohmann::json parameters = nlohmann::json::array();
    for (const auto& direction : userParams) {
        nlohmann::json& lanesOfDirection = parameters.emplace_back(nlohmann::json::array());
        for (const auto& lane : direction) {
            nlohmann::json& rates = lanesOfDirection.emplace_back(nlohmann::json::array());
            for (const auto& rate : lane) {
                rates.push_back(jsonOf(rate));
            }
        }
    }
    return {{"family", "SXB"},
            {"quadUsage", nlohmann::json::object()},
            {"laneUsage", lanes},
            {"userParams", parameters}};
}

laneUsageMap PackingRequest::laneUsage() const {
    laneUsageMap usage;
    for (const channelUsageInfo& channel : channels) {
        textMap& entry = usage[std::to_string(usage.size())];
        enterNumbers(entry, "tx", channel.tx);
        enterNumbers(entry, "rx", channel.rx);
        enterNumbers(entry, "rates", channel.rates);
        entry["txrate"] = boost::algorithm::join(channel.txrate, ",");
        entry["rxrate"] = boost::algorithm::join(channel.rxrate, ",");
    }
    return usage;
}

userParamMap PackingRequest::userParamDictionary() const {
    const std::vector<std::string> sections{"TX_SETTINGS", "RX_SETTINGS"};
    userParamMap result;
    for (std::size_t direction = 0; direction < userParams.size(); ++direction) {
        auto& lanes = result[sections.at(direction)];
        for (const auto& lane : userParams[direction]) {
            auto& rates = lanes["CH" + std::to_string(lanes.size())];
            for (const auto& rate : lane) {
                textMap& values = rates["LR" + std::to_string(rates.size()) + "_SETTINGS"];
                const nlohmann::json parameters = jsonOf(rate);
                for (const auto& [name, value] : parameters.items()) {
                    values[name] = value.is_string() ? value.get<std::string>() : value.dump();
                }
            }
        }
    }
    return result;
}

nlohmann::json PackingRequest::dictionaryForm() const {
    return {{"family", "SXB"},
            {"part", "sb100-pkg676-2-e-lane-es2-tessera"},
            {"quadUsage", nlohmann::json::object()},
            {"laneUsage", laneUsage()},
            {"userParams", userParamDictionary()}};
}

SmallDatabase PackingRequest::database() const {
    SmallDatabase database;
    database.request = fileForm();
    for (const int direction : {transmit, receive}) {
        const nlohmann::json parameters = jsonOf(parametersOf(direction, {}));
        for (const auto& [name, value] : parameters.items()) {
            const std::string type = value.is_string()         ? "string"
                                     : value.is_boolean()      ? "bool"
                                     : value.is_number_float() ? "double"
                                                               : "int";
            database.parameters[name] = {
                {"type", type},
                {"description", ""},
                {"default_value", value.is_string() ? value.get<std::string>() : value.dump()}};
        }
    }
    database.device = nlohmann::json::object();
    database.device["-3"] = limits;
    return database;
}

PackingRequest oneLane(const RateSettings& settings, int lane) {
    PackingRequest request;
    request.addBoth(lane, {settings});
    return request;
}

PackingRequest oneLaneAt(const std::vector<double>& lineRates) {
    std::vector<RateSettings> rates;
    for (const double lineRate : lineRates) {
        rates.push_back(tenGigabitEthernet());
        rates.back().lineRate = lineRate;
    }
    PackingRequest request;
    request.addBoth(0, rates);
    return request;
}

PackingRequest randomRequest(std::mt19937& random, const std::vector<double>& lineRates) {
    PackingRequest request;
    for (int lane = 0; lane < static_cast<int>(lanesOfQuad); ++lane) {
        std::vector<RateSettings> rates(oneOf<std::size_t>(random, {0, 1, 2, 3}));
        for (RateSettings& rate : rates) {
            rate.lineRate = oneOf(random, lineRates);
            rate.pll = oneOf<std::string>(random, {"LCPLL", "RPLL"});
            rate.refclk = oneOf<double>(random, {100.0, 125.0, 156.25});
            rate.source = oneOf<std::string>(random, {"R0", "R1"});
            // Lanes of different groups need not agree with each other.
            rate.group = std::to_string(lane);
        }
        if (!rates.empty()) {
            request.addBoth(lane, rates, "PIN" + std::to_string(lane));
        }
    }
    return request;
}

std::vector<std::string> textsOf(const std::map<int, std::string>& messages) {
    std::vector<std::string> texts;
    for (const auto& [number, text] : messages) {
        texts.push_back(text);
    }
    return texts;
}

std::string noVcoText(const std::string& pll, int dual, int rate) {
    return "DualLevelCheck: Cannot be packed because there is no VCO frequency solution for the " +
           pll + " used in " + lanesOfDual(dual) + " at rate " + std::to_string(rate) + "\n";
}

std::string clockMismatchText(const std::string& pll, int dual) {
    return "DualLevelCheck: Cannot be packed because the reference clock frequencies connected to "
           "the " +
           pll + " used in " + lanesOfDual(dual) + " are not compatible\n";
}

std::string sourceMismatchText(const std::string& pll, int dual) {
    return "DualLevelCheck: Cannot be packed because the reference clock sources connected to "
           "the " +
           pll + " used in " + lanesOfDual(dual) + " are not compatible\n";
}

std::string independentBypassText(int txRate, int rxRate, int lane) {
    return "ChannelLevelCheck: Invalid ILO configuration at TX rate " + std::to_string(txRate) +
           " and RX rate" + std::to_string(rxRate) + " in LANE_" + std::to_string(lane) +
           ". TX Buffer bypass or TXPIPPM can only be used when both TX and RX are connected to "
           "the same PLL.\n";
}

std::string commonBypassText(int rate, int lane) {
    return "ChannelLevelCheck: Invalid ILO configuration at TX and RX rate " +
           std::to_string(rate) + " in lane " + std::to_string(lane) +
           ". TX Buffer bypass or TXPIPPM can only be used when both TX and RX are connected to "
           "the same PLL.\n";
}

std::string connectionsText() {
    return "QuadLevelCheck: Cannot be packed because the requested reference clock sources and "
           "frequencies exceed 6 connections into the Quad!!!!\n";
}

std::string sentenceOf(const std::string& message) {
    const std::size_t begin = message.find(": ") + 2;
    return message.substr(begin, message.size() - begin - 1);
}

}  // namespace lanecfg_test
