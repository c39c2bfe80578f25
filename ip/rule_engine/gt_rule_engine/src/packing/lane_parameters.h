#pragma once

#include <lanecfg/gt_db_load.h>

#include <array>
#include <map>
#include <string>
#include <tuple>

namespace sable_lanecfg {

/// Directions as the user parameters index them.
enum class laneDirection { transmit = 0, receive = 1 };
inline constexpr std::array<laneDirection, 2> laneDirections{laneDirection::transmit,
                                                             laneDirection::receive};

inline laneDirection otherDirection(laneDirection direction) {
    return direction == laneDirection::transmit ? laneDirection::receive : laneDirection::transmit;
}

/// Begin of the parameter names of a direction.
const char* wordOf(laneDirection direction);

/// Lanes of a usage record in one direction.
const std::vector<int>& lanesOf(const channelUsageInfo& channel, laneDirection direction);

/// Whether a usage record has a lane in one direction.
bool hasLane(const channelUsageInfo& channel, laneDirection direction, int lane);

/// Name of the rate pin at a position of the lanes. Throws std::out_of_range without one.
const std::string& ratePinOf(const channelUsageInfo& channel, laneDirection direction,
                             std::size_t position);

/// Calls `visit(direction, lane, ratePin)` for all transmit positions of a record, then for all
/// receive positions.
template <class Visit>
void visitLanes(const channelUsageInfo& channel, const Visit& visit) {
    for (const laneDirection direction : laneDirections) {
        const std::vector<int>& lanes = lanesOf(channel, direction);
        for (std::size_t position = 0; position < lanes.size(); ++position) {
            visit(direction, lanes[position], ratePinOf(channel, direction, position));
        }
    }
}

/// The dual of a lane, 0 or 1.
inline int dualOf(int lane) {
    return lane > 1 ? 1 : 0;
}

/// Name of a dual in the tables of the packing.
std::string dualName(int dual);

/// User parameters of a lane and direction at one rate slot.
class laneParameters {
  public:
    /// Throws std::out_of_range when the request has no such lane or rate.
    laneParameters(const userParamStore& store, laneDirection direction, int lane, int slot);

    /// A parameter by its name without the word of the direction. Throws std::out_of_range when it
    /// is missing and std::invalid_argument when it has another type.
    template <class T>
    const T& get(const char* ending) const {
        const T* const value = find<T>(ending);
        if (value == nullptr) {
            throwMissing(nameWith(ending));
        }
        return *value;
    }

    /// The same, null when it is missing.
    template <class T>
    const T* find(const char* ending) const {
        const std::string name = nameWith(ending);
        const auto found = values_->find(name);
        if (found == values_->end()) {
            return nullptr;
        }
        const T* const value = boost::get<T>(&found->second);
        if (value == nullptr) {
            throwWrongType(name);
        }
        return value;
    }

  private:
    std::string nameWith(const char* ending) const;
    [[noreturn]] void throwMissing(const std::string& name) const;
    [[noreturn]] void throwWrongType(const std::string& name) const;
    std::string place() const;

    laneDirection direction_;
    int lane_;
    int slot_;
    const std::map<std::string, ruleValue>* values_;
};

/// The reference clocks (MHz) nearest to the requested ones that PLLs can use. Lanes mostly ask for
/// the same, which is then searched for once.
class actualRefclks {
  public:
    double of(double lineRate, double requestedRefclk, const std::string& pll);

  private:
    std::map<std::tuple<double, double, std::string>, double> known_;
};

/// How a lane and direction is clocked at one rate slot.
struct laneClocking {
    laneClocking(const laneParameters& parameters, actualRefclks& clocks);

    std::string source;      ///< of the reference clock, "R0" to "R5"
    std::string pll;         ///< of the data path
    double requestedRefclk;  ///< MHz
    double lineRate;         ///< Gb/s
    std::string dividerPll;  ///< source of the programmable divider
    bool isDividerEnabled;
    /// That which the data path's PLL can use. It stands for the programmable divider too,
    /// whichever its PLL.
    double actualRefclk;
};

}  // namespace sable_lanecfg
