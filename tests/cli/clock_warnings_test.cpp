#include "clock_warnings.h"

#include "cli/command_line.h"
#include "support/packing_request.h"

#include <gmock/gmock.h>

#include <random>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using sable_lanecfg::gt_quad_packing;
using sable_lanecfg::tool::ClockWarning;
using sable_lanecfg::tool::clockWarnings;
using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// An RPLL that serves a line multiplies by 5 to 25 or by 80 and divides the reference by 1 to 4.
//   10.3125 Gb/s: 5.15625 GHz; next to 156.25 MHz are 2 / 80 of it, 128.90625, and 1 / 25, 206.25.
//   5 Gb/s: 5 GHz; 2 / 80 of it are 125 MHz, 1 / 25 are 200.
//   12.5 Gb/s: 6.25 GHz; 2 / 80 of it are 156.25 MHz.
constexpr double clockOfTenGigabit = 128.90625;
constexpr double clockOfFiveGigabit = 125.0;

std::vector<ClockWarning> warningsOf(const PackingRequest& request) {
    gt_quad_packing packing = request.packing();
    packing.canBePacked(true);
    return clockWarnings(packing);
}

const std::string takeOtherPll =
    ". Put the clock that they are made for into the request and supply it, or take the other PLL "
    "where it is free: it can use what is asked for.";

class ClockWarnings : public testing::Test {
  protected:
    /// Warnings of a transmitter with these rates.
    std::vector<ClockWarning> warningsOfLane(int lane, const std::vector<RateSettings>& rates) {
        return warningsOf(request.add(transmit, lane, rates));
    }

    PackingRequest request;
};

TEST_F(ClockWarnings, AreNoneWhereTheRequestedClocksAreUsed) {
    // 66 and 64 times 156.25 MHz, 16 times 322.265625 MHz.
    request.addBoth(0, {tenGigabitEthernet()})
        .addBoth(2, {rateOf(10.0, "LCPLL")})
        .addBoth(3, {rateOf(10.3125, "RPLL", 322.265625)});
    EXPECT_THAT(warningsOf(request), IsEmpty());
}

TEST_F(ClockWarnings, TellWhatIsAskedForAndUsedAndTheWayOut) {
    const std::vector<ClockWarning> warnings = warningsOfLane(1, {rateOf(10.3125, "RPLL")});
    ASSERT_THAT(warnings, SizeIs(1));
    const ClockWarning& warning = warnings.front();
    EXPECT_THAT(warning.lanes, ElementsAre(1));
    EXPECT_THAT(warning.directions, ElementsAre("TX"));
    EXPECT_THAT(warning.groups, ElementsAre("A"));
    EXPECT_THAT(warning.plls, ElementsAre("RPLL"));
    EXPECT_THAT(warning.sources, ElementsAre("R0"));
    EXPECT_THAT(warning.rates, ElementsAre(0));
    EXPECT_THAT(warning.requested, ElementsAre(156.25));
    EXPECT_THAT(warning.used, ElementsAre(clockOfTenGigabit));
    EXPECT_EQ(warning.text,
              "lane 1 TX in packing group \"A\": the registers are made for a reference clock of "
              "128.90625 MHz where the request gives 156.25 MHz (RPLL, rate 0)" +
                  takeOtherPll);
}

TEST_F(ClockWarnings, DoNotOfferAPllThatCannotUseTheClockEither) {
    // 14.05 GHz is 89.92 times 156.25 MHz and too fast for a fraction, and for the RPLL anyway.
    const std::vector<ClockWarning> warnings = warningsOfLane(0, {rateOf(28.1)});
    ASSERT_THAT(warnings, SizeIs(1));
    EXPECT_THAT(warnings.front().used, ElementsAre(DoubleNear(14050.0 / 90, 1e-9)));
    EXPECT_THAT(warnings.front().text,
                HasSubstr("or choose another clock; lanecfg refclk tells which ones"));
}

TEST_F(ClockWarnings, AreOneForAllRatesOfALane) {
    const std::vector<ClockWarning> warnings =
        warningsOfLane(0, {rateOf(10.3125, "RPLL"), rateOf(5.0, "RPLL"), rateOf(10.3125, "RPLL"),
                           rateOf(12.5, "RPLL")});
    ASSERT_THAT(warnings, SizeIs(1));
    EXPECT_THAT(warnings.front().rates, ElementsAre(0, 1, 2));
    EXPECT_THAT(warnings.front().used, ElementsAre(clockOfFiveGigabit, clockOfTenGigabit));
    EXPECT_EQ(warnings.front().text,
              "lane 0 TX in packing group \"A\": the registers are made for a reference clock of "
              "125.0 MHz where the request gives 156.25 MHz (RPLL, rate 1), of 128.90625 MHz where "
              "the request gives 156.25 MHz (RPLL, rates 0, 2)" +
                  takeOtherPll);
}

TEST_F(ClockWarnings, AreOneForEachLaneDirectionAndRateGroup) {
    RateSettings ofGroupB = rateOf(10.3125, "RPLL");
    ofGroupB.group = "B";
    request.addBoth(1, {rateOf(10.3125, "RPLL")}).add(receive, 3, {ofGroupB});
    std::vector<std::string> places;
    for (const ClockWarning& warning : warningsOf(request)) {
        places.push_back(warning.text.substr(0, warning.text.find(':')));
    }
    EXPECT_THAT(places,
                ElementsAre("lane 1 TX in packing group \"A\"", "lane 1 RX in packing group \"A\"",
                            "lane 3 RX in packing group \"B\""));
}

TEST_F(ClockWarnings, KeepAnyNameOfAGroupOnOneLine) {
    RateSettings settings = rateOf(10.3125, "RPLL");
    settings.group = "A\nB";
    const std::vector<ClockWarning> warnings = warningsOfLane(0, {settings});
    ASSERT_THAT(warnings, SizeIs(1));
    EXPECT_THAT(warnings.front().text, HasSubstr("packing group \"A\\nB\""));
}

TEST_F(ClockWarnings, PassOverWhatAFractionLeaves) {
    // 10.709225 Gb/s is reached from 156.25000007 MHz.
    EXPECT_THAT(warningsOfLane(0, {rateOf(10.709225)}), IsEmpty());
}

TEST_F(ClockWarnings, BeginAboveHundredPartsPerMillion) {
    // 8 Gb/s: 4 GHz is 25 times 160 MHz. 0.015 of 160.015 are 94 ppm, 0.017 of 160.017 are 106.
    EXPECT_THAT(warningsOf(PackingRequest().add(transmit, 0, {rateOf(8.0, "RPLL", 160.015)})),
                IsEmpty());
    EXPECT_THAT(warningsOf(PackingRequest().add(transmit, 0, {rateOf(8.0, "RPLL", 160.017)})),
                SizeIs(1));
    EXPECT_THAT(warningsOf(PackingRequest().add(transmit, 0, {rateOf(8.0, "RPLL", 159.983)})),
                SizeIs(1));
}

TEST_F(ClockWarnings, KnowTheOneClockOfRatesThatChangeIndependently) {
    const std::vector<RateSettings> rates(2, rateOf(10.3125, "RPLL"));
    request.add(transmit, 0, rates, "A").add(transmit, 1, rates, "B");
    const std::vector<ClockWarning> warnings = warningsOf(request);
    ASSERT_THAT(warnings, SizeIs(2));
    EXPECT_THAT(warnings.back().rates, ElementsAre(0, 1));
    EXPECT_THAT(warnings.back().used, ElementsAre(clockOfTenGigabit));
}

TEST_F(ClockWarnings, LeaveAPllWithoutFrequencyToTheReasons) {
    // 5.15625 and 6.25 GHz.
    request.add(transmit, 0, {rateOf(10.3125, "RPLL")}).add(transmit, 1, {rateOf(12.5, "RPLL")});
    EXPECT_THAT(warningsOf(request), IsEmpty());
}

TEST_F(ClockWarnings, LeaveClocksThatDifferOnAPllToTheReasons) {
    request.add(transmit, 0, {rateOf(20.0)}).add(transmit, 1, {rateOf(20.0, "LCPLL", 100.0)});
    EXPECT_THAT(warningsOf(request), IsEmpty());
}

TEST_F(ClockWarnings, PassOverLanesThatNoChannelUses) {
    request.add(transmit, 0, {rateOf(10.3125, "RPLL")});
    request.channels.clear();
    request.add(transmit, 1, {rateOf(20.0)});
    EXPECT_THAT(warningsOf(request), IsEmpty());
}

TEST_F(ClockWarnings, PassOverPlacesWithoutParameters) {
    request.add(transmit, 0, {rateOf(10.3125, "RPLL")});
    gt_quad_packing packing = request.packing();
    packing.canBePacked(true);
    packing.userParams[transmit][0][0].erase("TX_REFCLK_FREQUENCY");
    EXPECT_THAT(clockWarnings(packing), IsEmpty());
    packing.userParams.clear();
    EXPECT_THAT(clockWarnings(packing), IsEmpty());
}

TEST_F(ClockWarnings, TellOfASourceFromWhichLanesWouldNeedSeveralClocks) {
    request.add(transmit, 0, {rateOf(10.3125)}).add(receive, 2, {rateOf(10.3125, "RPLL")});
    const std::vector<ClockWarning> warnings = warningsOf(request);
    ASSERT_THAT(warnings, SizeIs(2));
    const ClockWarning& ofSource = warnings.back();
    EXPECT_THAT(ofSource.lanes, ElementsAre(0, 2));
    EXPECT_THAT(ofSource.sources, ElementsAre("R0"));
    EXPECT_THAT(ofSource.requested, ElementsAre(156.25));
    EXPECT_THAT(ofSource.used, ElementsAre(clockOfTenGigabit, 156.25));
    EXPECT_EQ(ofSource.text,
              "source \"R0\": where the request gives 156.25 MHz the registers are made for "
              "128.90625 MHz (lane 2 RX) and 156.25 MHz (lane 0 TX) at rate 0. Choose a clock that "
              "all of them can use, or a source for each of the clocks.");
}

TEST_F(ClockWarnings, TellOfASourceOnceForAllRatesAtWhichItNeedsSeveralClocks) {
    const std::vector<RateSettings> ofReceiver{rateOf(10.3125, "RPLL"), rateOf(12.5, "RPLL"),
                                               rateOf(10.3125, "RPLL")};
    request.add(transmit, 0, {rateOf(10.3125), rateOf(20.0), rateOf(25.78125)})
        .add(receive, 0, ofReceiver);
    const std::vector<ClockWarning> warnings = warningsOf(request);
    ASSERT_THAT(warnings, SizeIs(2));
    EXPECT_THAT(warnings.back().rates, ElementsAre(0, 2));
    EXPECT_THAT(warnings.back().text,
                HasSubstr("128.90625 MHz (lane 0 RX) and 156.25 MHz (lane 0 TX) at rates 0, 2."));
}

TEST_F(ClockWarnings, LetASourceChangeItsClockWithTheRate) {
    const std::vector<RateSettings> rates{rateOf(10.3125, "RPLL"), rateOf(12.5, "RPLL")};
    request.addBoth(0, rates).addBoth(2, rates);
    for (const ClockWarning& warning : warningsOf(request)) {
        EXPECT_THAT(warning.text, testing::StartsWith("lane "));
        EXPECT_THAT(warning.rates, ElementsAre(0));
    }
    EXPECT_THAT(warningsOf(request), SizeIs(4));
}

TEST_F(ClockWarnings, TakeSeveralClocksThatAreAskedForFromASourceAsMeant) {
    request.add(transmit, 0, {rateOf(20.0, "LCPLL", 100.0)})
        .add(transmit, 2, {rateOf(5.0, "RPLL", 125.0)});
    EXPECT_THAT(warningsOf(request), IsEmpty());
}

TEST_F(ClockWarnings, EndWhenTheUsedClockIsAskedFor) {
    std::mt19937 random(20);
    std::uniform_real_distribution<double> lineRate(0.5, 16.0);
    std::uniform_real_distribution<double> clock(60.0, 800.0);
    int warned = 0;
    for (int round = 0; round < 200; ++round) {
        RateSettings settings = rateOf(lineRate(random), "RPLL", clock(random));
        const auto warnings = warningsOf(PackingRequest().addBoth(round % 4, {settings}));
        if (warnings.empty()) {
            continue;
        }
        ++warned;
        settings.refclk = *warnings.front().used.begin();
        EXPECT_THAT(warningsOf(PackingRequest().addBoth(round % 4, {settings})), IsEmpty())
            << settings.lineRate << " Gb/s";
    }
    EXPECT_GT(warned, 100);
}

TEST_F(ClockWarnings, OfferTheOtherPllJustWhereItUsesTheClock) {
    std::mt19937 random(21);
    std::uniform_real_distribution<double> lineRate(0.5, 30.0);
    const std::vector<double> clocks{100.0, 125.0, 156.25, 161.1328125, 200.0, 322.265625};
    int offered = 0;
    int withheld = 0;
    for (std::size_t round = 0; round < 400; ++round) {
        RateSettings settings = rateOf(lineRate(random), round % 2 == 0 ? "RPLL" : "LCPLL",
                                       clocks[round % clocks.size()]);
        const auto warnings = warningsOf(PackingRequest().add(transmit, 0, {settings}));
        if (warnings.empty()) {
            continue;
        }
        settings.pll = settings.pll == "RPLL" ? "LCPLL" : "RPLL";
        const PackingRequest other = PackingRequest().add(transmit, 0, {settings});
        const bool isUsed = other.reasons().empty() && warningsOf(other).empty();
        const bool isOffered =
            warnings.front().text.find("take the other PLL") != std::string::npos;
        EXPECT_EQ(isOffered, isUsed) << settings.lineRate << " Gb/s on the " << settings.pll;
        ++(isOffered ? offered : withheld);
    }
    EXPECT_GT(offered, 20);
    EXPECT_GT(withheld, 20);
}

/// Changes the parameters of both directions in every lane and rate of a request.
template <class Value>
void change(json& request, const std::string& ending, const Value& value) {
    for (const int direction : {transmit, receive}) {
        for (json& lane : request["userParams"][static_cast<std::size_t>(direction)]) {
            for (json& rate : lane) {
                rate[(direction == transmit ? "TX" : "RX") + ending] = value;
            }
        }
    }
}

std::size_t warningCount(const ProgramResult& result) {
    std::size_t count = 0;
    const std::string label = "WARNING: ";
    for (std::size_t at = result.errors.find(label); at != std::string::npos;
         at = result.errors.find(label, at + 1)) {
        ++count;
    }
    return count;
}

/// 10GBASE-R on the RPLLs, by the rules of a family.
class ClockWarningOfRules : public CommandLine, public testing::WithParamInterface<std::string> {
  protected:
    ClockWarningOfRules() : request(bundledRequest(GetParam())) {
        change(request, "_PLL_TYPE", "RPLL");
    }

    json request;
};

TEST_P(ClockWarningOfRules, IsGivenByAttributesForEachLaneAndDirection) {
    const ProgramResult result = runOn(request, "attributes", {"--format", "json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(json::accept(result.output));
    EXPECT_EQ(warningCount(result), 8U) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("request.json: lane 3 RX in packing group \"A\": the "
                                         "registers are made for a reference clock of 128.90625 "
                                         "MHz where the request gives 156.25 MHz"));
}

TEST_P(ClockWarningOfRules, NamesTheClockThatTheRulesHave) {
    const ProgramResult result =
        runOn(request, "snapshot", {"--name", "INT_RPLL_REFCLKFREQ", "--format", "json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors;
    const json rows = json::parse(result.output);
    EXPECT_THAT(rows, SizeIs(4));
    for (const json& row : rows) {
        EXPECT_EQ(row.at("value"), clockOfTenGigabit);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, ClockWarningOfRules,
                         testing::Values("sxb_10gbase_r", "sxb_stable_10gbase_r", "sxc_10gbase_r"),
                         CaseName());

/// Two lanes with a PLL each, of which one can't use the clock.
class ClockWarningCommand : public CommandLine {
  protected:
    ClockWarningCommand() : request(bundledRequest("sxb_25g_and_10g")) {
        change(request, "_REFCLK_FREQUENCY", 156.25);
        request["laneUsage"].erase(2);  // lanes 2 and 3
    }

    json request;
};

TEST_F(ClockWarningCommand, IsPartOfTheVerdictForPeople) {
    const ProgramResult result = runOn(request, "pack");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(result.output, testing::StartsWith("fits\nwarning: lane 1 TX in packing group "));
    EXPECT_THAT(result.output, HasSubstr("\nwarning: lane 1 RX in packing group "));
    EXPECT_THAT(result.output, HasSubstr("\nwarning: source \"R0\": "));
}

TEST_F(ClockWarningCommand, IsPartOfTheVerdictInJson) {
    const ProgramResult result = runOn(request, "pack", {"--format", "json"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    const json answer = json::parse(result.output);
    EXPECT_EQ(answer.at("fits"), true);
    ASSERT_EQ(answer.at("warnings").size(), 3U);
    json first = answer["warnings"][0];
    EXPECT_THAT(first.at("warning").get<std::string>(), testing::StartsWith("lane 1 TX "));
    first.erase("warning");
    const json expected = {{"lanes", {1}},
                           {"directions", {"TX"}},
                           {"groups", {"A"}},
                           {"plls", {"RPLL"}},
                           {"sources", {"R0"}},
                           {"rates", {0}},
                           {"requested_mhz", {156.25}},
                           {"used_mhz", {clockOfTenGigabit}}};
    EXPECT_EQ(first, expected);
}

TEST_F(ClockWarningCommand, IsBesideTheTableInCsv) {
    const ProgramResult result = runOn(request, "pack", {"--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "level,lanes,pll,tx_rates,rx_rates,reason\n");
    EXPECT_EQ(warningCount(result), 3U) << result.errors;
}

TEST_F(ClockWarningCommand, IsGivenForEachRequestOfAComparison) {
    const std::string changed = directory.write("changed.json", request.dump());
    const std::string bundled = requestPath("sxb_25g_and_10g");
    const ProgramResult result = run({"attributes", "--diff", bundled, changed});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(warningCount(result), 3U) << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("WARNING: Request " + changed + ": lane 1 TX "));
}

TEST_F(ClockWarningCommand, IsGivenWhereRatesAreCompared) {
    const ProgramResult result = runOn(request, "attributes", {"--rates", "0_0", "0_0"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(warningCount(result), 3U) << result.errors;
}

}  // namespace
}  // namespace lanecfg_test
