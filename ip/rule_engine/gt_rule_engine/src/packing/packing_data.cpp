#include "packing/lane_parameters.h"
#include "packing/packing_faults.h"
#include "packing/packing_records.h"

#include <lanecfg/gt_quad_packing.h>

#include <algorithm>
#include <map>

namespace sable_lanecfg {

namespace {

/// The rates (Gb/s) that share the LCPLL's VCO clock of 12.890625 GHz, and the reference clock
/// (MHz) that they then need.
constexpr double lowerPairRate = 10.3125;
constexpr double upperPairRate = 25.78125;
constexpr double pairRefclk = 161.1328125;

std::string dualNameOf(int lane) {
    return dualName(dualOf(lane));
}

void addDistinct(std::vector<double>& clocks, double clock) {
    if (std::find(clocks.begin(), clocks.end(), clock) == clocks.end()) {
        clocks.push_back(clock);
    }
}

/// One use of a rate slot: the VCO clocks that would serve it, and its reference clock.
struct slotUse {
    std::vector<double> candidates;
    double refclk;
    std::string source;
};

/// The element of a slot; the slots before it stay empty.
template <class Lists>
typename Lists::value_type& slotIn(packingRecord& record, const char* field, std::size_t slot) {
    packingField& value = record[field];
    if (value.which() == 0) {
        value = Lists();
    }
    auto& lists = boost::get<Lists>(value);
    if (lists.size() <= slot) {
        lists.resize(slot + 1);
    }
    return lists[slot];
}

template <class Lists>
void copySlot(const packingRecord& from, packingRecord& to, const char* field, std::size_t slot) {
    slotIn<Lists>(to, field, slot) = slotOf(listsOf<Lists>(from, field), slot);
}

/// A lane's two directions on one PLL have to agree, so the first use of a slot begins with what
/// the other direction has there.
bool takeOverSlot(const packingRecords& records, int key, std::size_t slot, packingRecord& record) {
    const int keyOfOtherDirection = key ^ 1;
    const auto other = records.find(keyOfOtherDirection);
    if (other == records.end() || !usesSlot(other->second, slot)) {
        return false;
    }
    copySlot<packingNumbers>(other->second, record, ratesField, slot);
    copySlot<packingNumbers>(other->second, record, refclksField, slot);
    copySlot<packingTexts>(other->second, record, refclkSourcesField, slot);
    return true;
}

/// Of several uses of a slot all have to be served by one VCO clock.
void addUse(packingRecords& records, int key, std::size_t slot, const slotUse& use) {
    packingRecord& record = records[key];
    const bool isFurtherUse = usesSlot(record, slot) || takeOverSlot(records, key, slot, record);
    auto& candidates = slotIn<packingNumbers>(record, ratesField, slot);
    candidates = isFurtherUse ? gt_quad_packing::mainIntersectionLogic({candidates, use.candidates})
                              : use.candidates;
    slotIn<packingNumbers>(record, refclksField, slot).push_back(use.refclk);
    slotIn<packingTexts>(record, refclkSourcesField, slot).push_back(use.source);
}

/// Makes the candidate records of all lanes of a request.
class candidateTable {
  public:
    candidateTable(gt_quad_packing& packing, bool logErrors, packingMessages& messages)
        : packing_(packing), logErrors_(logErrors), messages_(messages) {}

    void add(const channelUsageInfo& channel) {
        std::map<int, bool> pairOfLane;
        visitLanes(channel, [&](laneDirection direction, int lane, const std::string& ratePin) {
            if (pairOfLane.count(lane) == 0) {
                pairOfLane[lane] = hasPair(channel, lane);
            }
            for (const int slot : channel.rates) {
                addSlot({direction, lane, slot, ratePin}, pairOfLane[lane]);
            }
        });
    }

  private:
    struct place {
        laneDirection direction;
        int lane;
        int slot;
        const std::string& ratePin;

        int recordKey() const { return 2 * lane + static_cast<int>(direction); }
    };

    bool hasGroup(int lane, const std::string& group) const {
        const auto dual = packing_.intermediateData.find(dualNameOf(lane));
        return dual != packing_.intermediateData.end() && dual->second.count(group) != 0;
    }

    /// Beside others of its group only the pair's own reference clock makes a rate one of the pair.
    bool canBeOfPair(const laneParameters& parameters, int lane) const {
        const bool isClock = parameters.get<double>("_REFCLK_FREQUENCY") == pairRefclk;
        const bool isFirst = !hasGroup(lane, parameters.get<std::string>("_RATE_GROUP"));
        return parameters.get<std::string>("_PLL_TYPE") == "LCPLL" && (isFirst || isClock);
    }

    /// Whether the LCPLL carries both rates of the pair in the slots of a lane.
    bool hasPair(const channelUsageInfo& channel, int lane) const {
        bool hasLower = false;
        bool hasUpper = false;
        for (const laneDirection direction : laneDirections) {
            if (!hasLane(channel, direction, lane)) {
                continue;
            }
            for (const int slot : channel.rates) {
                const laneParameters parameters(packing_.userParams, direction, lane, slot);
                const double lineRate = parameters.get<double>("_LINE_RATE");
                const bool canBe = canBeOfPair(parameters, lane);
                hasLower = hasLower || (canBe && lineRate == lowerPairRate);
                hasUpper = hasUpper || (canBe && lineRate == upperPairRate);
            }
        }
        return hasLower && hasUpper;
    }

    void addSlot(const place& at, bool isPair) {
        const laneParameters parameters(packing_.userParams, at.direction, at.lane, at.slot);
        const laneClocking clocking(parameters, clocks_);
        const auto dividerFrequency = parameters.get<double>("PROGDIV_FREQ_VAL");
        const auto& coding = parameters.get<std::string>(
            at.direction == laneDirection::transmit ? "_DATA_ENCODING" : "_DATA_DECODING");
        const auto intDataWidth = parameters.get<unsigned int>("_INT_DATA_WIDTH");
        const auto userDataWidth = parameters.get<unsigned int>("_USER_DATA_WIDTH");
        const auto& group = parameters.get<std::string>("_RATE_GROUP");
        const std::string dual = dualNameOf(at.lane);

        addDistinct(packing_.refclkFrequencies[dual + clocking.pll], clocking.actualRefclk);
        auto& plls = packing_.intermediateData[dual][group];
        createRecord(plls[clocking.pll], at);
        // Both are known before either is entered, so a fault never leaves a slot half done.
        const std::vector<double> dataCandidates = packing_.VCO_FrequencyCalculation(
            clocking.pll, clocking.lineRate, coding, intDataWidth, userDataWidth, isPair);
        const std::vector<double> dividerCandidates =
            clocking.isDividerEnabled
                ? packing_.VCO_FrequencyProgDivCalculation(clocking.dividerPll, dividerFrequency)
                : std::vector<double>();
        addUseAt(at, plls[clocking.pll], clocking, dataCandidates);
        if (clocking.isDividerEnabled) {
            createRecord(plls[clocking.dividerPll], at);
            addUseAt(at, plls[clocking.dividerPll], clocking, dividerCandidates);
        }
    }

    static void createRecord(packingRecords& records, const place& at) {
        const auto [record, isNew] = records.try_emplace(at.recordKey());
        if (isNew) {
            record->second[ratePinField] = at.ratePin;
        }
    }

    void addUseAt(const place& at, packingRecords& records, const laneClocking& clocking,
                  const std::vector<double>& candidates) {
        try {
            addUse(records, at.recordKey(), static_cast<std::size_t>(at.slot),
                   {candidates, clocking.actualRefclk, clocking.source});
        } catch (const std::exception& fault) {
            reportPackingFault(packingRecordFaultFormat, fault, __LINE__, logErrors_, messages_);
        }
    }

    gt_quad_packing& packing_;
    bool logErrors_;
    packingMessages& messages_;
    actualRefclks clocks_;
};

}  // namespace

std::map<int, std::string> gt_quad_packing::intermediateDSCreation(bool logErrors) {
    packingMessages messages;
    catchPackingFaults(__LINE__, logErrors, messages, [&] {
        candidateTable table(*this, logErrors, messages);
        for (const channelUsageInfo& channel : channels) {
            table.add(channel);
        }
    });
    return messages;
}

}  // namespace sable_lanecfg
