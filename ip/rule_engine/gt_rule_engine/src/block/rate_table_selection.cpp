#include "block/rate_table_limits.h"

#include <lanecfg/gt_rule_engine.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/predicate.hpp>
#include <boost/variant/get.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>

namespace sable_lanecfg {

namespace {

using boost::algorithm::starts_with;
using attributeList = std::vector<RateTableAttribute>;
using parameterMap = std::map<std::string, ruleValue>;

/// Parameter names of one direction.
struct directionParameters {
    const char* word;
    const char* coding;
    const char* userWidth;
    const char* internalWidth;
    const char* bufferMode;
};

constexpr directionParameters txParameters = {"TX", "TX_DATA_ENCODING", "TX_USER_DATA_WIDTH",
                                              "TX_INT_DATA_WIDTH", "TX_BUFFER_MODE"};
constexpr directionParameters rxParameters = {"RX", "RX_DATA_DECODING", "RX_USER_DATA_WIDTH",
                                              "RX_INT_DATA_WIDTH", "RX_BUFFER_MODE"};

/// A parameter that a rate lacks or has in another type, as a bad value that tells which it is.
class unusable_parameter : public boost::bad_get {
  public:
    explicit unusable_parameter(const std::string& text) : text_(text) {}
    const char* what() const noexcept override { return text_.what(); }

  private:
    std::runtime_error text_;  // whose text can be copied without a fault
};

/// User parameters of a lane at one rate.
class rateParameters {
  public:
    rateParameters(const parameterMap& values, const directionParameters& names, std::size_t lane,
                   std::size_t rate)
        : values_(values), names_(names), lane_(lane), rate_(rate) {}

    /// Double width with the asynchronous gearbox takes masked writes one lane at a time.
    bool needSingleLane() const {
        const auto coding = get<std::string>(names_.coding);
        const auto userWidth = get<unsigned int>(names_.userWidth);
        const auto internalWidth = get<unsigned int>(names_.internalWidth);
        get<unsigned int>(names_.bufferMode);  // demanded of every rate, without effect
        return internalWidth != 0 && userWidth / internalWidth == 2 && coding == "64B66B_ASYNC";
    }

  private:
    template <class T>
    T get(const char* name) const {
        const auto found = values_.find(name);
        if (found == values_.end()) {
            throwUnusable(name, "is missing");
        }
        const T* const value = boost::get<T>(&found->second);
        if (value == nullptr) {
            throwUnusable(name, "has another type");
        }
        return *value;
    }

    [[noreturn]] void throwUnusable(const char* name, const char* fault) const {
        throw unusable_parameter(std::string(name) + ' ' + fault + " in " + names_.word +
                                 " of lane " + std::to_string(lane_) + " at rate " +
                                 std::to_string(rate_));
    }

    const parameterMap& values_;
    const directionParameters& names_;
    std::size_t lane_;
    std::size_t rate_;
};

void findSingleLanes(const userParamStore& params, std::size_t direction,
                     const directionParameters& names, std::array<int, 4>& singleLane) {
    if (direction >= params.size()) {
        return;
    }
    const auto& lanes = params[direction];
    for (std::size_t lane = 0; lane < lanes.size() && lane < singleLane.size(); ++lane) {
        for (std::size_t rate = 0; rate < lanes[lane].size(); ++rate) {
            if (rateParameters(lanes[lane][rate], names, lane, rate).needSingleLane()) {
                singleLane[lane] = 1;
            }
        }
    }
}

/// A register that is met twice has a second writer, whose bits have to survive the first one's
/// write.
void noteWriter(RateTableControl& control, const std::string& fullName, bool always) {
    if (always) {
        control.maskedAttributes.insert(fullName);
    } else if (control.maskedAttributes.count(fullName) == 0 &&
               !control.nonMaskedAttributes.insert(fullName).second) {
        control.nonMaskedAttributes.erase(fullName);
        control.maskedAttributes.insert(fullName);
    }
}

void sortByAddress(attributeList& attributes) {
    std::stable_sort(attributes.begin(), attributes.end(),
                     [](const RateTableAttribute& first, const RateTableAttribute& second) {
                         return first.address < second.address;
                     });
}

void logWritable(const std::string& title, const attributeList& attributes) {
    rule_engine_utilities::write_log(title);
    for (const RateTableAttribute& attribute : attributes) {
        rule_engine_utilities::write_log("Name: " + attribute.name);
        rule_engine_utilities::write_log("Address: " + std::to_string(attribute.address));
    }
}

}  // namespace

void gt_rule_engine::separateCriticalAttributes_New(RateTableChannel* channels,
                                                    RateTableControl& control) {
    for (int channel = 0; channel < rateTableChannels; ++channel) {
        const auto& passes = passesOf(channel);
        if (!passes.empty()) {
            const auto mode = passes.front().find("PIPE_CTRL_CFG0.PCIE_MODE");
            const bool isPcie = mode != passes.front().end() && textOf(mode->second.value) == "1";
            control.pcieMode[static_cast<std::size_t>(channel)] = isPcie ? 1 : 0;
        }
    }
    findSingleLanes(userParams, 0, txParameters, control.txSingleLane);
    findSingleLanes(userParams, 1, rxParameters, control.rxSingleLane);

    const auto noteWriters = [&](const attributeList& critical, bool ownsTable) {
        for (const RateTableAttribute& attribute : critical) {
            // Registers of a dual are written by the table owner alone.
            if (ownsTable || !starts_with(attribute.type, "hs")) {
                noteWriter(control, getPrefix(attribute.name, attribute.channel) + attribute.name,
                           alwaysMasked.count(attribute.name) != 0);
            }
        }
    };
    for (int channel = 0; channel < rateTableChannels; ++channel) {
        const RateTableChannel& own = channels[channel];
        noteWriters(own.txAttributes, own.txMaster == channel);
        noteWriters(own.rxAttributes, own.rxMaster == channel);
    }

    rule_engine_utilities::write_log("Masked Attribute List");
    for (const std::string& name : control.maskedAttributes) {
        rule_engine_utilities::write_log(name);
    }
    rule_engine_utilities::write_log("Non-Masked Attribute List");
    for (const std::string& name : control.nonMaskedAttributes) {
        rule_engine_utilities::write_log(name);
    }
}

void gt_rule_engine::sortRateTable_New(RateTableChannel* channels, RateTableControl& control) {
    const auto distribute = [&](const attributeList& critical, bool alwaysMaskedOnly,
                                attributeList& masked, attributeList& normal) {
        for (const RateTableAttribute& attribute : critical) {
            const std::string fullName =
                getPrefix(attribute.name, attribute.channel) + attribute.name;
            if (control.maskedAttributes.count(fullName) != 0) {
                if (!alwaysMaskedOnly || alwaysMasked.count(attribute.name) != 0) {
                    masked.push_back(attribute);
                }
            } else if (control.nonMaskedAttributes.count(fullName) != 0) {
                normal.push_back(attribute);
            } else {
                rule_engine_utilities::write_log("Attribute not found: " + attribute.name +
                                                 "\nThis should not ever happen");
            }
        }
        sortByAddress(masked);
        sortByAddress(normal);
    };

    for (int channel = 0; channel < rateTableChannels; ++channel) {
        const auto index = static_cast<std::size_t>(channel);
        const bool ownsTable = channels[channel].txMaster == channel;
        if (!ownsTable && control.txSingleLane[index] == 0) {
            rule_engine_utilities::write_log("TX Channel " + std::to_string(channel) + " Skipped");
            continue;
        }
        distribute(channels[channel].txAttributes, !ownsTable, control.txMasked[index],
                   control.txNormal[index]);
        rule_engine_utilities::write_log("\nChannel " + std::to_string(channel) +
                                         " Writable Lists\n");
        logWritable("***TX Masked Writable Lists***", control.txMasked[index]);
        logWritable("***TX Writable Lists***", control.txNormal[index]);
    }
    for (int channel = 0; channel < rateTableChannels; ++channel) {
        const auto index = static_cast<std::size_t>(channel);
        if (channels[channel].rxMaster != channel) {
            rule_engine_utilities::write_log("RX Channel " + std::to_string(channel) + " Skipped");
            continue;
        }
        distribute(channels[channel].rxAttributes, false, control.rxMasked[index],
                   control.rxNormal[index]);
        logWritable("***RX Masked Writable Lists***", control.rxMasked[index]);
        logWritable("***RX Writable Lists***", control.rxNormal[index]);
    }
}

}  // namespace sable_lanecfg
