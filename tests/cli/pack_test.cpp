#include "cli/command_line.h"
#include "support/packing_request.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// Runs the program on a request and a database that fits it.
class PackCommand : public CommandLine {
  protected:
    ProgramResult packForm(const json& content, const std::vector<std::string>& options) const {
        request.database().writeTo(directory);
        std::vector<std::string> arguments{"--database", directory.file(".")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runOn(content, "pack", arguments);
    }

    ProgramResult pack(const std::vector<std::string>& options = {}) const {
        return packForm(request.fileForm(), options);
    }

    json answer(int exitCode, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> withFormat = options;
        withFormat.insert(withFormat.end(), {"--format", "json"});
        const ProgramResult result = pack(withFormat);
        EXPECT_EQ(result.exitCode, exitCode) << result.errors;
        return json::parse(result.output);
    }

    /// Expects that the request does not fit, for this one reason.
    void expectReason(const json& reason) const {
        const json expected = {{"fits", false}, {"reasons", {reason}}, {"warnings", json::array()}};
        EXPECT_EQ(answer(1), expected);
    }

    PackingRequest request;
};

TEST_F(PackCommand, SaysThatTheChannelsFit) {
    request.addBoth(0, {rateOf(20.0)}).addBoth(2, {rateOf(10.3125, "RPLL", 322.265625)});
    const ProgramResult result = pack();
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, "fits\n");
    EXPECT_EQ(result.errors, "");
    const json fits = {{"fits", true}, {"reasons", json::array()}, {"warnings", json::array()}};
    EXPECT_EQ(answer(0), fits);
}

TEST_F(PackCommand, ListsTheReasonsInText) {
    request.add(transmit, 0, {rateOf(10.3125)}).add(transmit, 1, {rateOf(25.78125)});
    const ProgramResult result = pack();
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output,
              "LEVEL  LANES  PLL    TX_RATES  RX_RATES  REASON\n"
              "dual   0, 1   LCPLL  0                   Cannot be packed because there is no VCO "
              "frequency solution for the LCPLL used in lanes 0 and/or 1 at rate 0\n"
              "does not fit: 1 reason\n");
}

TEST_F(PackCommand, TellsOfARateWithoutCommonVco) {
    request.addBoth(2, {rateOf(20.0), rateOf(10.3125)})
        .add(receive, 3, {rateOf(20.0), rateOf(25.78125)});
    expectReason({{"level", "dual"},
                  {"lanes", {2, 3}},
                  {"pll", "LCPLL"},
                  {"tx_rates", {1}},
                  {"rx_rates", {1}},
                  {"reason", sentenceOf(noVcoText("LCPLL", 1, 1))}});
}

TEST_F(PackCommand, NamesAllRatesThatNeedOneFrequency) {
    request.add(transmit, 0, {rateOf(20.0), rateOf(25.78125)}, "A")
        .add(transmit, 1, {rateOf(20.0)}, "B");
    expectReason({{"level", "dual"},
                  {"lanes", {0, 1}},
                  {"pll", "LCPLL"},
                  {"tx_rates", {0, 1}},
                  {"rx_rates", json::array()},
                  {"reason", sentenceOf(noVcoText("LCPLL", 0, 0))}});
}

TEST_F(PackCommand, TellsOfAClockMismatchAndItsRates) {
    request.add(transmit, 0, {rateOf(20.0), rateOf(20.0), rateOf(20.0)})
        .add(transmit, 1, {rateOf(20.0), rateOf(20.0, "LCPLL", 100.0)});
    expectReason({{"level", "dual"},
                  {"lanes", {0, 1}},
                  {"pll", "LCPLL"},
                  {"tx_rates", {1}},
                  {"rx_rates", json::array()},
                  {"reason", sentenceOf(clockMismatchText("LCPLL", 0))}});
}

TEST_F(PackCommand, TellsOfASourceMismatch) {
    request.add(receive, 2, {rateOf(5.0, "RPLL", 125.0, "R0")})
        .add(receive, 3, {rateOf(5.0, "RPLL", 125.0, "R4")});
    expectReason({{"level", "dual"},
                  {"lanes", {2, 3}},
                  {"pll", "RPLL"},
                  {"tx_rates", json::array()},
                  {"rx_rates", {0}},
                  {"reason", sentenceOf(sourceMismatchText("RPLL", 1))}});
}

TEST_F(PackCommand, NamesTheRatesBehindAnEntryThatNoLaneUses) {
    // Slot 0 has a copy of the candidates of slot 1, so both have no common frequency.
    request.add(transmit, 0, {rateOf(10.3125), rateOf(10.3125)})
        .add(transmit, 1, {rateOf(25.78125), rateOf(25.78125)});
    json content = request.fileForm();
    for (json& lane : content["laneUsage"]) {
        lane["rates"] = {1};
    }
    const ProgramResult result = packForm(content, {"--format", "json"});
    EXPECT_EQ(result.exitCode, 1) << result.errors;
    const json reasons = json::parse(result.output)["reasons"];
    ASSERT_EQ(reasons.size(), 2U) << reasons;
    for (const json& reason : reasons) {
        EXPECT_EQ(reason["lanes"], json({0, 1}));
        EXPECT_EQ(reason["tx_rates"], json({1}));
    }
}

TEST_F(PackCommand, NamesTheLanesOfOneRateGroupForEachOfEqualReasons) {
    // No VCO goes as fast as 100 Gb/s wants.
    RateSettings ofGroupB = rateOf(100.0);
    ofGroupB.group = "B";
    request.add(transmit, 0, {rateOf(20.0), rateOf(100.0)}).add(receive, 1, {ofGroupB, ofGroupB});
    const auto reasonOf = [](const json& lanes, const json& txRates, const json& rxRates,
                             int rate) -> json {
        return {{"level", "dual"},     {"lanes", lanes},
                {"pll", "LCPLL"},      {"tx_rates", txRates},
                {"rx_rates", rxRates}, {"reason", sentenceOf(noVcoText("LCPLL", 0, rate))}};
    };
    const json none = json::array();
    EXPECT_EQ(answer(1)["reasons"], json({reasonOf({0}, {1}, none, 1), reasonOf({1}, none, {0}, 0),
                                          reasonOf({1}, none, {1}, 1)}));
}

/// A word for a PLL that no quad has.
class PllWord : public PackCommand, public testing::WithParamInterface<std::string> {};

TEST_P(PllWord, OfAnyFormIsNamedWithItsLanes) {
    request.add(transmit, 0, {rateOf(10.3125, GetParam())});
    const json reasons = answer(1)["reasons"];
    ASSERT_FALSE(reasons.empty());
    EXPECT_EQ(reasons[0]["level"], "dual");
    EXPECT_EQ(reasons[0]["pll"], GetParam());
    EXPECT_EQ(reasons[0]["lanes"], json({0}));
}

INSTANTIATE_TEST_SUITE_P(Each, PllWord,
                         testing::Values("A PLL", "A\nPLL", " used in lanes 2",
                                         std::string(100'000, 'X')),
                         [](const auto& test) { return "Word" + std::to_string(test.index); });

TEST_F(PackCommand, TellsOfMoreThanSixConnections) {
    std::vector<RateSettings> rates;
    const std::vector<double> clocks{100.0, 125.0, 156.25, 200.0, 250.0, 312.5};
    for (const double clock : clocks) {
        rates.push_back(rateOf(20.0, "LCPLL", clock, "R" + std::to_string(rates.size())));
    }
    request.add(transmit, 0, rates).add(receive, 3, {rateOf(5.0, "RPLL", 125.0)});
    expectReason({{"level", "quad"},
                  {"lanes", {0, 3}},
                  {"pll", nullptr},
                  {"tx_rates", {0, 1, 2, 3, 4, 5}},
                  {"rx_rates", {0}},
                  {"reason", sentenceOf(connectionsText())}});
}

/// A lane without transmit buffer whose sides are on two PLLs.
class PackCommandOnBypass : public PackCommand {
  protected:
    PackCommandOnBypass() {
        RateSettings unbuffered = rateOf(20.0);
        unbuffered.bufferMode = 0;
        request.addBoth(1, {rateOf(20.0), unbuffered});
        request.parametersAt(receive, 1, 1) = parametersOf(receive, rateOf(5.0, "RPLL", 125.0));
    }
};

TEST_F(PackCommandOnBypass, TellsOfSidesThatChangeRateTogether) {
    expectReason({{"level", "channel"},
                  {"lanes", {1}},
                  {"pll", nullptr},
                  {"tx_rates", {1}},
                  {"rx_rates", {1}},
                  {"reason", sentenceOf(commonBypassText(1, 1))}});
}

TEST_F(PackCommandOnBypass, TellsOfSidesThatChangeRateIndependently) {
    request.channels.back().rxrate = {"OTHER"};
    expectReason({{"level", "channel"},
                  {"lanes", {1}},
                  {"pll", nullptr},
                  {"tx_rates", {1}},
                  {"rx_rates", {1}},
                  {"reason", sentenceOf(independentBypassText(1, 1, 1))}});
}

TEST_F(PackCommandOnBypass, ListsReasonsByLevel) {
    // The library tells of the connections between the channels and the duals.
    std::vector<RateSettings> rates;
    const std::vector<double> clocks{100.0, 125.0, 156.25, 200.0, 250.0, 312.5};
    for (const double clock : clocks) {
        rates.push_back(rateOf(20.0, "LCPLL", clock, "R" + std::to_string(rates.size())));
    }
    request.add(transmit, 2, rates).add(transmit, 3, {rateOf(25.78125, "LCPLL", 125.0)});
    const json answered = answer(1);
    std::vector<std::string> levels;
    for (const json& reason : answered.at("reasons")) {
        levels.push_back(reason.at("level"));
    }
    EXPECT_THAT(levels, testing::ElementsAre("channel", "dual", "quad"));
}

TEST_F(PackCommand, TenAndTwentyFiveGigabitFitThroughTheSharedVco) {
    const std::vector<RateSettings> rates{rateOf(10.3125, "LCPLL", 161.1328125),
                                          rateOf(25.78125, "LCPLL", 161.1328125)};
    request.addBoth(0, rates, "TXPIN");
    request.channels.back().rxrate = {"RXPIN"};
    const json answered = answer(0, {"--why"});
    const json left = {
        {"rate", nullptr},       {"vco_ghz", {12.890625}}, {"refclk_mhz", 161.1328125},
        {"refclks_agree", true}, {"source", "R0"},         {"sources_agree", true}};
    EXPECT_EQ(answered.at("plls").at(0).at("left"), json::array({left}));
    EXPECT_EQ(answered.at("plls").at(0).at("independent_rates"), true);
}

TEST_F(PackCommand, AddsThePorts) {
    request.addBoth(0, {rateOf(20.0)}, "link.0")
        .add(receive, 2, {rateOf(5.0, "RPLL", 125.0, "R1")});
    const json ports = {{"HSCLK0_LCPLLGTREFCLK0", "refclk_link_R0_156.25_MHz_unique1"},
                        {"HSCLK1_RPLLGTREFCLK1", "refclk_PIN_R1_125_MHz_unique1"}};
    EXPECT_EQ(answer(0, {"--ports"}).at("ports"), ports);
    EXPECT_EQ(pack({"--ports"}).output,
              "fits\n"
              "\n"
              "PORT                   CLOCK\n"
              "HSCLK0_LCPLLGTREFCLK0  refclk_link_R0_156.25_MHz_unique1\n"
              "HSCLK1_RPLLGTREFCLK1   refclk_PIN_R1_125_MHz_unique1\n");
    EXPECT_EQ(pack({"--ports", "--format", "csv"}).output,
              "port,clock\n"
              "HSCLK0_LCPLLGTREFCLK0,refclk_link_R0_156.25_MHz_unique1\n"
              "HSCLK1_RPLLGTREFCLK1,refclk_PIN_R1_125_MHz_unique1\n");
}

TEST_F(PackCommand, ShowsWhichLaneBreaksThePack) {
    request.add(transmit, 0, {rateOf(10.3125)})
        .add(transmit, 1, {rateOf(25.78125)})
        .add(receive, 2, {rateOf(20.0)})
        .add(receive, 3, {rateOf(20.0, "LCPLL", 100.0)});
    EXPECT_EQ(pack({"--why", "--format", "csv"}).output,
              "dual,group,pll,rate,lane,direction,rate_pin,vco_ghz,refclk_mhz,source\n"
              "DUAL_0,A,LCPLL,0,0,TX,PIN,\"5.15625, 10.3125\",156.25,R0\n"
              "DUAL_0,A,LCPLL,0,1,TX,PIN,12.890625,156.25,R0\n"
              "DUAL_0,A,LCPLL,0,left,,,none,,\n"
              "DUAL_1,A,LCPLL,0,2,RX,PIN,10.0,156.25,R0\n"
              "DUAL_1,A,LCPLL,0,3,RX,PIN,10.0,100.0,R0\n"
              "DUAL_1,A,LCPLL,0,left,,,10.0,differ,R0\n");
}

TEST_F(PackCommand, ShowsOneRestForAllRatesOfIndependentLanes) {
    request.add(transmit, 0, {rateOf(10.0, "LCPLL", 100.0), rateOf(20.0, "LCPLL", 100.0)}, "A")
        .add(transmit, 1, {rateOf(5.0, "LCPLL", 100.0, "R1")}, "B");
    EXPECT_EQ(pack({"--why"}).output,
              "LEVEL  LANES  PLL    TX_RATES  RX_RATES  REASON\n"
              "dual   0, 1   LCPLL  0, 1                Cannot be packed because the reference "
              "clock sources connected to the LCPLL used in lanes 0 and/or 1 are not compatible\n"
              "does not fit: 1 reason\n"
              "\n"
              "DUAL    GROUP  PLL    RATE  LANE  DIRECTION  RATE_PIN  VCO_GHZ    REFCLK_MHZ  "
              "SOURCE\n"
              "DUAL_0  A      LCPLL     0     0  TX         A         5.0, 10.0  100.0       R0\n"
              "DUAL_0  A      LCPLL     0     1  TX         B         5.0, 10.0  100.0       R1\n"
              "DUAL_0  A      LCPLL     1     0  TX         A         10.0       100.0       R0\n"
              "DUAL_0  A      LCPLL  all   left                       10.0       100.0       "
              "differ\n");
}

TEST_F(PackCommand, GivesTheCandidatesInJson) {
    request.add(transmit, 0, {rateOf(10.3125)}).add(receive, 1, {rateOf(25.78125)});
    const json plls = {{{"dual", "DUAL_0"},
                        {"group", "A"},
                        {"pll", "LCPLL"},
                        {"independent_rates", false},
                        {"candidates",
                         {{{"rate", 0},
                           {"lane", 0},
                           {"direction", "TX"},
                           {"rate_pin", "PIN"},
                           {"vco_ghz", {5.15625, 10.3125}},
                           {"refclk_mhz", {156.25}},
                           {"sources", {"R0"}}},
                          {{"rate", 0},
                           {"lane", 1},
                           {"direction", "RX"},
                           {"rate_pin", "PIN"},
                           {"vco_ghz", {12.890625}},
                           {"refclk_mhz", {156.25}},
                           {"sources", {"R0"}}}}},
                        {"left",
                         {{{"rate", 0},
                           {"vco_ghz", json::array()},
                           {"refclk_mhz", nullptr},
                           {"refclks_agree", nullptr},
                           {"source", nullptr},
                           {"sources_agree", nullptr}}}}}};
    EXPECT_EQ(answer(1, {"--why"}).at("plls"), plls);
}

TEST_F(PackCommand, TakesTheDictionaryForm) {
    request.add(transmit, 0, {rateOf(10.3125)}).add(transmit, 1, {rateOf(25.78125)});
    const ProgramResult result = packForm(request.dictionaryForm(), {"--format", "csv"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.output,
              "level,lanes,pll,tx_rates,rx_rates,reason\n"
              "dual,\"0, 1\",LCPLL,0,," +
                  sentenceOf(noVcoText("LCPLL", 0, 0)) + "\n");
}

TEST_F(PackCommand, CsvHoldsOneTable) {
    request.addBoth(0, {rateOf(20.0)});
    expectFailure(pack({"--ports", "--why", "--format", "csv"}), 2, "CSV holds one table");
}

TEST_F(PackCommand, RefusesAFamilyWithOnePll) {
    const std::string file = requestPath("sxd4_pam4_56g");
    expectFailure(run({"pack", file}), 1, "Request " + file + ": There is no packing for SXD4");
}

TEST_F(PackCommand, MissingParameterCannotBeJudged) {
    request.addBoth(0, {rateOf(20.0)});
    request.parametersAt(receive, 0).erase("RX_PLL_TYPE");
    const ProgramResult result = pack();
    expectFailure(result, 1, "RX_PLL_TYPE is missing in RX of lane 0 at rate 0");
    EXPECT_THAT(result.errors, HasSubstr("can't be judged"));
}

TEST_F(PackCommand, MissingLimitCannotBeJudged) {
    request.addBoth(0, {rateOf(20.0)});
    request.limits.erase("FLCPLLRANGE_MIN");
    expectFailure(pack(), 1, "device limit FLCPLLRANGE_MIN is missing");
}

TEST_F(PackCommand, LimitThatIsNoNumberCannotBeJudged) {
    request.addBoth(0, {rateOf(20.0)});
    request.limits["FLCPLLRANGE_MIN"] = {"low"};
    const ProgramResult result = pack();
    expectFailure(result, 1, "device limit FLCPLLRANGE_MIN is no number: \"low\"");
    EXPECT_THAT(result.errors, HasSubstr("can't be judged"));
}

TEST_F(PackCommand, LaneBeyondTheParametersCannotBeJudged) {
    request.addBoth(0, {rateOf(20.0)});
    request.channels.back().tx = {4};
    const ProgramResult result = pack();
    expectFailure(result, 1, "no user parameters for TX of lane 4 at rate 0");
    EXPECT_THAT(result.errors, HasSubstr("can't be judged"));
}

TEST_F(PackCommand, RateBeyondTheParametersCannotBeJudged) {
    request.addBoth(0, {rateOf(20.0)});
    request.channels.back().rates = {1};
    expectFailure(pack(), 1, "no user parameters for TX of lane 0 at rate 1");
}

TEST_F(PackCommand, UnknownParameterIsNamed) {
    request.addBoth(0, {rateOf(20.0)});
    request.parametersAt(transmit, 0)["TX_NEW"] = 1U;
    expectFailure(pack(), 1, "TX_NEW");
}

}  // namespace
}  // namespace lanecfg_test
