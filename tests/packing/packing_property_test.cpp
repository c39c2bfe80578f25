#include "support/packing_request.h"

#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <set>

namespace lanecfg_test {
namespace {

using sable_lanecfg::gt_quad_packing;
using sable_lanecfg::packingNumbers;
using sable_lanecfg::rule_engine_utilities;

const std::vector<double> standardRates{1.25,   2.5,    3.125,    5.0,     6.144, 6.25,
                                        8.0,    9.8304, 10.0,     10.3125, 12.5,  16.0,
                                        16.375, 20.625, 25.78125, 28.05,   32.0,  33.0};
const std::vector<double> standardClocks{100.0, 122.88, 125.0, 156.25, 161.1328125, 322.265625};
const std::vector<std::string> plls{"LCPLL", "RPLL"};

/// The clocks of a PLL from which a line rate can be made, from what the dividers do: the rate is
/// twice the PLL clock over a power of two, and the oscillator runs at the PLL clock or, in the
/// LCPLL at rates that need no halving, at twice it.
std::set<double> pllClocks(const RateSettings& settings) {
    const bool isLcpll = settings.pll == "LCPLL";
    const double lowest = isLcpll ? 8.0 : 4.0;
    const double highest = isLcpll ? 16.375 : 8.0;
    const auto canRunAt = [&](double oscillator) {
        return oscillator > lowest - 1e-9 && oscillator < highest + 1e-9;
    };
    std::set<double> clocks;
    for (int power = 0; power <= 4; ++power) {
        const double clock = settings.lineRate / 2.0 * std::pow(2.0, power);
        const bool canDouble = isLcpll && settings.lineRate <= 16.375;
        if (canRunAt(clock) || (canDouble && canRunAt(2.0 * clock))) {
            clocks.insert(clock);
        }
    }
    return clocks;
}

double actualClock(const RateSettings& settings) {
    return rule_engine_utilities::calculateActualRefclk(settings.lineRate, settings.refclk,
                                                        settings.pll);
}

bool haveCommonClock(const RateSettings& one, const RateSettings& other) {
    const std::set<double> first = pllClocks(one);
    const std::set<double> second = pllClocks(other);
    return std::any_of(first.begin(), first.end(),
                       [&second](double clock) { return second.count(clock) != 0; });
}

/// What has to be said about lanes 0 and 1 with one rate each.
std::vector<std::string> expectedReasons(const RateSettings& one, const RateSettings& other) {
    std::vector<std::string> reasons;
    if (one.pll != other.pll) {
        for (const RateSettings& lane :
             one.pll < other.pll ? std::vector{one, other} : std::vector{other, one}) {
            if (pllClocks(lane).empty()) {
                reasons.push_back(noVcoText(lane.pll, 0, 0));
            }
        }
        return reasons;
    }
    if (!haveCommonClock(one, other)) {
        return {noVcoText(one.pll, 0, 0)};
    }
    if (actualClock(one) != actualClock(other)) {
        reasons.push_back(clockMismatchText(one.pll, 0));
    }
    if (one.source != other.source) {
        reasons.push_back(sourceMismatchText(one.pll, 0));
    }
    return reasons;
}

std::vector<RateSettings> gridOf(const std::vector<double>& clocks, const std::string& source) {
    std::vector<RateSettings> grid;
    for (const double lineRate : standardRates) {
        for (const std::string& pll : plls) {
            for (const double clock : clocks) {
                grid.push_back(rateOf(lineRate, pll, clock, source));
            }
        }
    }
    return grid;
}

std::string textOf(const RateSettings& settings) {
    return std::to_string(settings.lineRate) + " " + settings.pll + " " +
           std::to_string(settings.refclk) + " " + settings.source;
}

TEST(PackingSweep, OneLaneIsRefusedExactlyWhenNoClockServesIt) {
    std::size_t refused = 0;
    for (const RateSettings& settings : gridOf(standardClocks, "R0")) {
        const std::vector<std::string> reasons = PackingRequest().addBoth(0, {settings}).reasons();
        const std::vector<std::string> expected = pllClocks(settings).empty()
                                                      ? std::vector{noVcoText(settings.pll, 0, 0)}
                                                      : std::vector<std::string>();
        ASSERT_EQ(reasons, expected) << textOf(settings);
        refused += reasons.empty() ? 0 : 1;
    }
    EXPECT_GT(refused, 0U);
}

TEST(PackingSweep, TwoLanesOfADualHaveTheReasonsOfADirectEnumeration) {
    const std::vector<double> clocks{125.0, 156.25, 161.1328125};
    const std::vector<RateSettings> first = gridOf(clocks, "R0");
    std::size_t packed = 0;
    for (const std::string source : {"R0", "R1"}) {
        const std::vector<RateSettings> second = gridOf(clocks, source);
        for (const RateSettings& one : first) {
            for (const RateSettings& other : second) {
                const std::vector<std::string> reasons =
                    PackingRequest().add(transmit, 0, {one}).add(transmit, 1, {other}).reasons();
                ASSERT_EQ(reasons, expectedReasons(one, other))
                    << textOf(one) << ", " << textOf(other);
                packed += reasons.empty() ? 1 : 0;
            }
        }
    }
    EXPECT_GT(packed, 0U);
}

/// Random requests, the same in every run.
class PackingProperty : public testing::Test {
  protected:
    template <class Choices>
    auto oneOf(const Choices& choices) {
        using index = std::uniform_int_distribution<std::size_t>;
        return choices[index(0, choices.size() - 1)(random)];
    }

    bool coin() { return oneOf(std::vector<int>{0, 1}) != 0; }

    RateSettings randomRate(const std::vector<double>& lineRates) {
        RateSettings settings =
            rateOf(oneOf(lineRates), oneOf(plls), oneOf(std::vector<double>{100.0, 125.0}),
                   oneOf(std::vector<std::string>{"R0", "R0", "R0", "R1"}));
        settings.coding = oneOf(std::vector<std::string>{"RAW", "8B10B"});
        settings.group = oneOf(std::vector<std::string>{"A", "A", "B"});
        settings.hasDivider = oneOf(std::vector<int>{0, 0, 0, 1}) != 0;
        settings.dividerPll = oneOf(plls);
        settings.bufferMode = oneOf(std::vector<unsigned>{0, 1, 1, 1});
        return settings;
    }

    std::vector<RateSettings> randomRates(const std::vector<double>& lineRates) {
        std::vector<RateSettings> rates;
        const std::size_t count = oneOf(std::vector<std::size_t>{1, 1, 2, 3});
        std::generate_n(std::back_inserter(rates), count, [&] { return randomRate(lineRates); });
        return rates;
    }

    std::string randomPin() { return oneOf(std::vector<std::string>{"A", "A", "B"}); }

    std::mt19937 random{20261121};
    static constexpr int repetitions = 1000;
};

TEST_F(PackingProperty, IntersectionIsTheMathematicalOne) {
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        packingNumbers lists(oneOf(std::vector<std::size_t>{2, 3, 4}));
        for (std::vector<double>& list : lists) {
            list.resize(oneOf(std::vector<std::size_t>{0, 4, 8, 12}));
            std::generate(list.begin(), list.end(), [&] {
                return oneOf(std::vector<double>{5.0, std::nextafter(5.0, 6.0), 5.15625, 8.0, 10.0,
                                                 12.890625});
            });
        }
        std::set<double> common(lists.front().begin(), lists.front().end());
        for (const std::vector<double>& list : lists) {
            const std::set<double> other(list.begin(), list.end());
            std::set<double> both;
            std::set_intersection(common.begin(), common.end(), other.begin(), other.end(),
                                  std::inserter(both, both.end()));
            common = both;
        }
        ASSERT_THAT(gt_quad_packing::mainIntersectionLogic(lists),
                    testing::ElementsAreArray(common));
    }
}

/// Reasons of the channel and dual levels. The number of connections is another matter: two
/// connections that come to have several frequencies each can come to have one name.
std::size_t countLaneReasons(const PackingRequest& request) {
    const std::vector<std::string> reasons = request.reasons();
    return reasons.size() -
           static_cast<std::size_t>(std::count(reasons.begin(), reasons.end(), connectionsText()));
}

TEST_F(PackingProperty, AddingALaneNeverMakesAnUnpackableQuadPackable) {
    std::size_t refused = 0;
    std::size_t newlyRefused = 0;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        std::vector<int> lanes{0, 1, 2, 3};
        std::shuffle(lanes.begin(), lanes.end(), random);
        PackingRequest request;
        bool wasRefused = false;
        for (const int lane : lanes) {
            const auto rates = randomRates(standardRates);
            if (coin()) {
                request.addBoth(lane, rates, randomPin());
            } else {
                request.add(coin() ? transmit : receive, lane, rates, randomPin());
            }
            const bool isRefused = countLaneReasons(request) > 0;
            ASSERT_TRUE(isRefused || !wasRefused) << "lane " << lane << " of " << repetition;
            refused += wasRefused ? 1 : 0;
            newlyRefused += isRefused && !wasRefused ? 1 : 0;
            wasRefused = isRefused;
        }
    }
    EXPECT_GT(refused, 0U);
    EXPECT_GT(newlyRefused, 0U);
}

/// A dual of two lanes on one pin; the usage record names them in the given order.
PackingRequest dualOf(const std::vector<RateSettings>& lane0,
                      const std::vector<RateSettings>& lane1, bool isSwapped) {
    PackingRequest request;
    request.addBoth(isSwapped ? 1 : 0, lane0).addBoth(isSwapped ? 0 : 1, lane1);
    return request;
}

TEST_F(PackingProperty, PermutingLanesThatShareAPinDoesNotChangeTheVerdict) {
    std::size_t refused = 0;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        const auto one = randomRates(standardRates);
        const auto other = randomRates(standardRates);
        const bool isRefused = !dualOf(one, other, false).reasons().empty();
        ASSERT_EQ(!dualOf(one, other, true).reasons().empty(), isRefused) << repetition;
        refused += isRefused ? 1 : 0;
    }
    EXPECT_GT(refused, 0U);
    EXPECT_LT(refused, static_cast<std::size_t>(repetitions));
}

TEST_F(PackingProperty, OrderOfLanesThatShareAPinDoesNotChangeTheVerdict) {
    // The pair of 10.3125 and 25.78125 asks for its clock only beside earlier lanes, so its order
    // matters.
    std::vector<double> lineRates = standardRates;
    lineRates.erase(std::find(lineRates.begin(), lineRates.end(), 25.78125));
    std::size_t refused = 0;
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        const auto one = randomRates(lineRates);
        const auto other = randomRates(lineRates);
        const bool isRefused = !dualOf(one, other, false).reasons().empty();
        ASSERT_EQ(!dualOf(other, one, false).reasons().empty(), isRefused) << repetition;
        refused += isRefused ? 1 : 0;
    }
    EXPECT_GT(refused, 0U);
    EXPECT_LT(refused, static_cast<std::size_t>(repetitions));
}

}  // namespace
}  // namespace lanecfg_test
