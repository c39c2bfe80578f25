#include "model_update.h"

#include <lanecfg/ToolGTDRCModel.h>
#include <lanecfg/ToolSXD4DRCModel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

// The reference clocks that the models offer are those that some setting of the dividers makes, no
// more and no less.

namespace {

using namespace lanecfg_test;

/// A PLL whose reference clock is `multiplier * rate * 1000 / (2 * divisor)`, in MHz.
struct Pll {
    std::string name;
    MakeModel make;
    std::string parameter;
    Parameters words;
    std::string numeratorParameter;
    std::vector<int> multipliers;
    std::vector<int> divisors;
    bool hasFraction;
    double lowest;
    double highest;
    double precision;  ///< of one part
};

std::ostream& operator<<(std::ostream& stream, const Pll& pll) {
    return stream << pll.name;
}

std::vector<int> integers(int first, int last) {
    std::vector<int> result;
    for (int value = first; value <= last; ++value) {
        result.push_back(value);
    }
    return result;
}

std::vector<int> products(const std::vector<int>& first, const std::vector<int>& second) {
    std::vector<int> result;
    for (const int one : first) {
        for (const int other : second) {
            result.push_back(one * other);
        }
    }
    return result;
}

constexpr double singlePrecision = 5e-7;
constexpr double doublePrecision = 1e-14;

std::vector<Pll> plls() {
    const MakeModel subcore = makeModel<ToolGTDRCModel>;
    const MakeModel sxd4 = makeModel<ToolSXD4DRCModel>;
    return {
        {"RpllOfTheSubcore",
         subcore,
         "TX_REFCLK_FREQUENCY",
         {{"TX_PLL_TYPE", "RPLL"}},
         "TX_QPLL_FRACN_NUMERATOR",
         products({1, 2}, {1, 2, 4, 8}),
         products({1, 2, 3, 4, 5}, {4, 5}),
         false,
         80.0,
         1400.0,
         singlePrecision},
        {"LcpllOfTheSubcore",
         subcore,
         "TX_REFCLK_FREQUENCY",
         {{"TX_PLL_TYPE", "LCPLL"}},
         "TX_QPLL_FRACN_NUMERATOR",
         products({1, 2, 3, 4}, {1, 2, 4, 8, 16}),
         integers(13, 159),
         true,
         80.0,
         1400.0,
         singlePrecision},
        {"Sxd4",
         sxd4,
         "REQUESTED_REFCLK_FREQ",
         {{"TX_PAM_SEL", "NRZ"}},
         "FRACN_NUMERATOR",
         {1, 2, 3, 4},
         integers(16, 159),
         true,
         60.0,
         820.0,
         doublePrecision},
    };
}

class ReferenceClockWalk : public testing::TestWithParam<Pll> {
  protected:
    std::vector<double> offered(double lineRate, int numerator) {
        Parameters given = GetParam().words;
        given["TX_LINE_RATE"] = std::to_string(lineRate);
        given[GetParam().numeratorParameter] = std::to_string(numerator);
        std::vector<double> clocks;
        for (const std::string& text : evaluate(*model_, GetParam().parameter, given).range) {
            clocks.push_back(std::stod(text));
        }
        return clocks;
    }

    /// All clocks in ascending order, also those beyond the limits.
    static std::vector<double> reachable(double lineRate, int numerator) {
        const Pll& pll = GetParam();
        const double rate = pll.name == "Sxd4" && lineRate <= 14.5 ? 2 * lineRate : lineRate;
        const double fraction = pll.hasFraction ? numerator / 26.0 : 0.0;
        std::vector<double> clocks;
        for (const int multiplier : pll.multipliers) {
            for (const int divisor : pll.divisors) {
                clocks.push_back(multiplier * rate * 1000.0 / (2.0 * (divisor + fraction)));
            }
        }
        std::sort(clocks.begin(), clocks.end());
        return clocks;
    }

    /// How far two clocks may be from each other that are the same.
    static double allowed(double clock) {
        constexpr double textPrecision = 0.6e-7;
        return clock * GetParam().precision + textPrecision;
    }

    /// Whether one of the ascending clocks is the same as `clock`.
    static bool contains(const std::vector<double>& clocks, double clock) {
        const auto next = std::lower_bound(clocks.begin(), clocks.end(), clock - allowed(clock));
        return next != clocks.end() && *next <= clock + allowed(clock);
    }

    /// Whether a clock is within the limits whatever the rounding.
    static bool surelyWithinLimits(double clock) {
        return clock - allowed(clock) >= GetParam().lowest &&
               clock + allowed(clock) <= GetParam().highest;
    }

    std::unique_ptr<ToolDRCModel> model_ = GetParam().make();
};

struct LineSetting {
    double lineRate;
    int numerator;
};

std::vector<LineSetting> lineSettings() {
    std::vector<LineSetting> settings{{0.5, 0}, {1.25, 0}, {10.3125, 0}, {14.5, 0}, {14.5, 13}};
    std::mt19937 engine(20240612);  // NOLINT(cert-msc51-cpp): the same sequence in every run
    std::uniform_int_distribution<int> rate(10, 60000);
    std::uniform_int_distribution<int> numerator(0, 25);
    for (int count = 0; count < 40; ++count) {
        settings.push_back({rate(engine) / 1000.0, numerator(engine)});
    }
    return settings;
}

TEST_P(ReferenceClockWalk, offersOnlyWhatTheDividersReach) {
    for (const LineSetting& line : lineSettings()) {
        const std::vector<double> clocks = reachable(line.lineRate, line.numerator);
        for (const double clock : offered(line.lineRate, line.numerator)) {
            EXPECT_TRUE(contains(clocks, clock)) << clock << " at " << line.lineRate;
        }
    }
}

TEST_P(ReferenceClockWalk, offersAllThatTheDividersReachWithinTheLimits) {
    for (const LineSetting& line : lineSettings()) {
        const std::vector<double> clocks = offered(line.lineRate, line.numerator);
        for (const double clock : reachable(line.lineRate, line.numerator)) {
            if (surelyWithinLimits(clock)) {
                EXPECT_TRUE(contains(clocks, clock)) << clock << " at " << line.lineRate;
            }
        }
    }
}

TEST_P(ReferenceClockWalk, keepsToTheLimitsInAscendingOrder) {
    for (const LineSetting& line : lineSettings()) {
        const std::vector<double> clocks = offered(line.lineRate, line.numerator);
        EXPECT_TRUE(std::is_sorted(clocks.begin(), clocks.end()));
        if (!clocks.empty()) {
            EXPECT_GE(clocks.front(), GetParam().lowest);
            EXPECT_LE(clocks.back(), GetParam().highest);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, ReferenceClockWalk, testing::ValuesIn(plls()), caseName<Pll>);

}  // namespace
