#include "sxd4_passes.h"

#include <lanecfg/ToolSXD4DRCModel.h>

#include <boost/lexical_cast.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::Sxd4Passes;
using lanecfg_test::VariableValues;

/// The same line for the host's model and for the family.
struct Line {
    double symbolRate;  ///< GHz
    double reference;   ///< MHz
    bool isPam4;

    double lineRate() const { return isPam4 ? 2.0 * symbolRate : symbolRate; }

    VariableValues parameters() const {
        return {{"TX_LINE_RATE", lineRate()},
                {"TX_PAM_SEL", isPam4 ? 0U : 1U},
                {"TX_REFCLK_FREQUENCY", reference},
                {"RX_ENABLE", false}};
    }
};

/// All that a designer can ask for, in this grid of symbol rates and reference clocks.
std::vector<Line> lines() {
    const std::vector<double> symbolRates{5.15625, 7.25,  9.8,    10.3125, 12.5, 14.025,   14.5,
                                          17.0,    19.6,  20.625, 24.5,    25.0, 25.78125, 26.5625,
                                          27.9525, 28.05, 28.1,   28.125,  28.9, 29.0};
    const std::vector<double> references{
        60.0,  62.0,  62.5,  100.0, 120.0,      125.0, 150.0, 156.25, 161.1328125, 200.0, 212.5,
        250.0, 300.0, 312.5, 320.0, 322.265625, 400.0, 500.0, 640.0,  700.0,       750.0, 820.0};
    std::vector<Line> all;
    for (const double symbolRate : symbolRates) {
        for (const double reference : references) {
            all.push_back({symbolRate, reference, true});
            all.push_back({symbolRate, reference, false});
        }
    }
    return all;
}

/// What the host shows beside a line.
struct HostAnswer {
    double reference;  ///< MHz, that the PLL can really use
    bool isFractional;
};

std::string updated(ToolSXD4DRCModel& model, const std::string& parameter, const Line& line) {
    std::map<std::string, std::string> values{
        {"PARAM_VALUE.TX_LINE_RATE", boost::lexical_cast<std::string>(line.lineRate())},
        {"PARAM_VALUE.REQUESTED_REFCLK_FREQ", boost::lexical_cast<std::string>(line.reference)},
        {"PARAM_VALUE." + parameter, ""},
        {"PARAM_VALUE.TX_PAM_SEL", line.isPam4 ? "PAM4" : "NRZ"}};
    bool isEditable = true;
    std::vector<std::string> offered;
    model.evalUpdateProc("update_PARAM_VALUE." + parameter, values, isEditable, offered);
    return values.at("PARAM_VALUE." + parameter);
}

HostAnswer hostAnswer(ToolSXD4DRCModel& model, const Line& line) {
    return {std::stod(updated(model, "ACTUAL_REFCLK_FREQ", line)),
            updated(model, "FRACN_ENABLED", line) == "true"};
}

/// What the rules make of it.
struct FamilyAnswer {
    unsigned divider;  ///< of the reference clock, 0 without a solution
    bool isFractional;
    double reference;  ///< MHz, that the dividers stand for
};

FamilyAnswer familyAnswer(const Sxd4Passes& passes, std::size_t rate) {
    const unsigned divider = passes.number("INT_LCPLL_REF_DIV", rate);
    const unsigned fraction = passes.number("SDMDATA", rate);
    const bool isFull = passes.valueOf<std::string>("INT_LCPLLCLKOUTRATE", rate) == "FULL";
    const double oscillator =
        passes.valueOf<double>("INT_LCPLL_PLLCLKOUT", rate) * (isFull ? 1000.0 : 2000.0);
    const double feedback = passes.number("INT_LCPLL_FBDIV", rate) + fraction / 16777216.0;
    return {divider, fraction != 0, divider == 0 ? 0.0 : oscillator * divider / feedback};
}

/// Fractions are cut off in the 24th place behind a feedback divider of 16 or more.
constexpr double resolution = 1.0 / 16777216.0 / 16.0;
/// Above this symbol rate the host's model offers no fraction; the rules know no such limit.
constexpr double fractionalCeiling = 28.1;
/// Where the oscillator begins. Below, the rules run it at twice the line, which the model does not
/// know.
constexpr double lowestOscillator = 9.8;
constexpr double highestOscillator = 14.5;

double oscillatorOf(const Line& line) {
    return line.symbolRate > highestOscillator ? line.symbolRate / 2 : line.symbolRate;
}

/// Whether a later reference divider than the one taken makes the ratio a whole number of up to 80.
/// Then the model drops the fraction, while the rules keep the first divider that passes.
bool isWholeLater(const Line& line, unsigned taken) {
    for (unsigned divider = taken + 1; divider <= 4; ++divider) {
        const double ratio = oscillatorOf(line) * divider * 1000.0 / line.reference;
        if (line.reference / divider > 59.99999 && ratio <= 80.0 && ratio == std::floor(ratio)) {
            return true;
        }
    }
    return false;
}

/// Whether one of the model's reference dividers makes the ratio a whole number that it takes.
bool isWholeAtTheLine(const Line& line) {
    for (const int divider : {1, 2, 3, 4}) {
        const double ratio = oscillatorOf(line) * divider * 1000.0 / line.reference;
        if (ratio >= 16.0 && ratio <= 160.0 && std::fabs(ratio - std::round(ratio)) < 1e-9) {
            return true;
        }
    }
    return false;
}

class Sxd4Agreement : public testing::Test {
  protected:
    static std::vector<VariableValues> parametersOf(const std::vector<Line>& grid) {
        std::vector<VariableValues> parameters;
        parameters.reserve(grid.size());
        for (const Line& line : grid) {
            parameters.push_back(line.parameters());
        }
        return parameters;
    }

    /// Calls the check with each line of the grid, the two answers, and the divider taken; gives
    /// the number of lines for which it was true.
    template <class Check>
    unsigned countOf(const Check& check) {
        unsigned count = 0;
        for (std::size_t index = 0; index < grid_.size(); ++index) {
            const Line& line = grid_[index];
            SCOPED_TRACE(testing::Message() << line.symbolRate << " Gbaud, " << line.reference
                                            << " MHz" << (line.isPam4 ? ", PAM4" : ", NRZ"));
            count += check(line, hostAnswer(model_, line), familyAnswer(passes_, index)) ? 1 : 0;
        }
        return count;
    }

    ToolSXD4DRCModel model_{"model"};
    const std::vector<Line> grid_ = lines();
    const Sxd4Passes passes_{parametersOf(grid_)};
};

bool isOfBoth(const Line& line, const FamilyAnswer& family) {
    return family.divider != 0 && line.symbolRate >= lowestOscillator &&
           line.symbolRate <= fractionalCeiling;
}

/// A fraction that is cut off stands for a reference clock a little higher than the one wanted,
/// which the host refuses at the end of its range.
bool isCutOffBeyondTheEnd(const Line& line, const FamilyAnswer& family) {
    constexpr double highestReference = 820.0;
    return family.isFractional && line.reference == highestReference;
}

TEST_F(Sxd4Agreement, OnTheReferenceClockUpToTheCeiling) {
    const unsigned lines =
        countOf([](const Line& line, const HostAnswer& host, const FamilyAnswer& family) {
            if (!isOfBoth(line, family) || isCutOffBeyondTheEnd(line, family)) {
                return false;
            }
            EXPECT_NEAR(host.reference, line.reference, line.reference * resolution + 1e-11);
            EXPECT_NEAR(family.reference, line.reference, line.reference * resolution);
            return true;
        });
    EXPECT_GT(lines, 200U);
}

TEST_F(Sxd4Agreement, OnTheFractionUpToTheCeilingUnlessALaterDividerIsWhole) {
    const unsigned fractional =
        countOf([](const Line& line, const HostAnswer& host, const FamilyAnswer& family) {
            if (!isOfBoth(line, family) || isWholeLater(line, family.divider)) {
                return false;
            }
            EXPECT_EQ(host.isFractional, family.isFractional);
            return family.isFractional;
        });
    EXPECT_GT(fractional, 50U);
}

TEST_F(Sxd4Agreement, EndsWhereALaterDividerIsWhole) {
    const unsigned different =
        countOf([](const Line& line, const HostAnswer& host, const FamilyAnswer& family) {
            if (!isOfBoth(line, family) || !isWholeLater(line, family.divider)) {
                return false;
            }
            EXPECT_FALSE(host.isFractional);
            return family.isFractional;
        });
    EXPECT_GT(different, 5U);
}

TEST_F(Sxd4Agreement, EndsAtTheHighestReferenceOfWhichAFractionIsCutOff) {
    const unsigned lower =
        countOf([](const Line& line, const HostAnswer& host, const FamilyAnswer& family) {
            if (!isOfBoth(line, family) || !isCutOffBeyondTheEnd(line, family)) {
                return false;
            }
            EXPECT_NEAR(family.reference, line.reference, line.reference * resolution);
            return host.reference < line.reference - 1.0;
        });
    EXPECT_GT(lower, 5U);
}

TEST_F(Sxd4Agreement, EndsAboveTheCeilingWhereTheHostMovesTheReferenceInstead) {
    const unsigned moved =
        countOf([](const Line& line, const HostAnswer& host, const FamilyAnswer& family) {
            if (family.divider == 0 || line.symbolRate <= fractionalCeiling) {
                return false;
            }
            EXPECT_FALSE(host.isFractional);
            if (!family.isFractional) {
                EXPECT_NEAR(host.reference, line.reference, 1e-9);
            }
            return family.isFractional && std::fabs(host.reference - line.reference) > 1e-3;
        });
    EXPECT_GT(moved, 20U);
}

TEST_F(Sxd4Agreement, EndsBelowTheOscillatorThatTheRulesRunAtTwiceTheLine) {
    unsigned moved = 0;
    const unsigned solved =
        countOf([&moved](const Line& line, const HostAnswer& host, const FamilyAnswer& family) {
            if (line.symbolRate >= lowestOscillator) {
                return false;
            }
            EXPECT_FALSE(host.isFractional);
            // Without a fraction the host keeps the clocks alone that are whole at the line.
            const bool isKept = isWholeAtTheLine(line);
            EXPECT_EQ(std::fabs(host.reference - line.reference) < 1e-9, isKept);
            if (family.divider == 0) {
                return false;
            }
            EXPECT_NEAR(family.reference, line.reference, line.reference * resolution);
            moved += isKept ? 0 : 1;
            return true;
        });
    EXPECT_GT(solved, 40U);
    EXPECT_GT(moved, 20U);
    EXPECT_LT(moved, solved);
}

TEST_F(Sxd4Agreement, EndsWhereTheRulesFindNoDividers) {
    unsigned fractional = 0;
    const unsigned unsolved = countOf(
        [&fractional](const Line& line, const HostAnswer& host, const FamilyAnswer& family) {
            if (family.divider != 0) {
                return false;
            }
            // The host always has a nearest clock. It has a fraction beside 158 to 160 too.
            EXPECT_GT(host.reference, 0.0);
            if (host.isFractional) {
                ++fractional;
                EXPECT_GE(std::floor(oscillatorOf(line) * 1000.0 / line.reference), 158.0);
            }
            return true;
        });
    EXPECT_GT(unsolved, 40U);
    EXPECT_GT(fractional, 0U);
}

}  // namespace
}  // namespace sable_lanecfg
