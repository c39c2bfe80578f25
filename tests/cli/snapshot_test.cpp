#include "cli/command_line.h"
#include "errors.h"
#include "snapshot_rows.h"

#include <gmock/gmock.h>

#include <limits>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using sable_lanecfg::ruleValue;
using sable_lanecfg::variableMap;
using testing::HasSubstr;

variableMap passOf(unsigned txRate, unsigned rxRate) {
    return {{"TX", {boost::none, txRate}},
            {"RX", {boost::none, rxRate}},
            {"A_CFG.FIELD", {3, 7U}},
            {"B_CFG.FIELD", {4, 9U}}};
}

/// Two channels: one transmit and two receive rates, and one of each.
std::vector<std::vector<variableMap>> twoChannels() {
    return {{passOf(0, 0), passOf(0, 1)}, {passOf(0, 0)}};
}

std::vector<std::string> textsOf(const Table& table, std::size_t column) {
    std::vector<std::string> texts;
    for (const std::vector<Cell>& row : table.rows) {
        texts.push_back(row[column].text);
    }
    return texts;
}

constexpr std::size_t channelColumn = 0;
constexpr std::size_t rxRateColumn = 2;
constexpr std::size_t nameColumn = 3;

TEST(SnapshotRows, AreAllVariablesOfAllPassesWithoutFilter) {
    EXPECT_EQ(snapshotRows(twoChannels(), {}).rows.size(), 12U);
}

TEST(SnapshotRows, HaveChannelRatesNameTypeValueAndRule) {
    SnapshotFilter filter;
    filter.names = {"A_CFG.FIELD"};
    filter.channels = {0};
    filter.rxRates = {1};
    const Table table = snapshotRows(twoChannels(), filter);
    EXPECT_EQ(jsonText(table),
              "[\n  "
              R"({"channel":0,"tx_rate":0,"rx_rate":1,"name":"A_CFG.FIELD","type":"unsigned",)"
              R"("value":7,"rule":3})"
              "\n]\n");
}

TEST(SnapshotRows, AreFilteredByShellPatterns) {
    SnapshotFilter filter;
    filter.names = {"?_CFG.*"};
    filter.channels = {1};
    EXPECT_THAT(textsOf(snapshotRows(twoChannels(), filter), nameColumn),
                testing::ElementsAre("A_CFG.FIELD", "B_CFG.FIELD"));
}

TEST(SnapshotRows, MatchAnyOfSeveralPatterns) {
    SnapshotFilter filter;
    filter.names = {"[AC]_*", "TX"};
    filter.channels = {1};
    EXPECT_THAT(textsOf(snapshotRows(twoChannels(), filter), nameColumn),
                testing::ElementsAre("A_CFG.FIELD", "TX"));
}

TEST(SnapshotRows, AreFilteredByChannel) {
    SnapshotFilter filter;
    filter.names = {"TX"};
    filter.channels = {1};
    EXPECT_THAT(textsOf(snapshotRows(twoChannels(), filter), channelColumn),
                testing::ElementsAre("1"));
}

TEST(SnapshotRows, AreFilteredByRate) {
    SnapshotFilter filter;
    filter.names = {"TX"};
    filter.txRates = {0};
    filter.rxRates = {0};
    const Table table = snapshotRows(twoChannels(), filter);
    EXPECT_THAT(textsOf(table, channelColumn), testing::ElementsAre("0", "1"));
    EXPECT_THAT(textsOf(table, rxRateColumn), testing::ElementsAre("0", "0"));
}

TEST(SnapshotRows, FailWhenNothingMatchesAndTellWhatThereIs) {
    SnapshotFilter filter;
    filter.rxRates = {2};
    try {
        snapshotRows(twoChannels(), filter);
        FAIL() << "found";
    } catch (const RequestError& error) {
        EXPECT_THAT(error.what(), HasSubstr("channel 0 has transmit rates 0 to 0 and receive "
                                            "rates 0 to 1; channel 1 has"));
    }
}

struct ValueForm {
    std::string name;
    ruleValue value;
    std::string text;
    std::string csv;
    std::string json;
};

constexpr double infinity = std::numeric_limits<double>::infinity();

class SnapshotValue : public testing::TestWithParam<ValueForm> {};

TEST_P(SnapshotValue, HasItsForm) {
    const Cell cell = valueCell({boost::none, GetParam().value});
    EXPECT_EQ(cell.text, GetParam().text);
    EXPECT_EQ(cell.exactText.value_or(cell.text), GetParam().csv);
    EXPECT_EQ(jsonText(cell.value), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(
    Each, SnapshotValue,
    testing::Values(
        ValueForm{"Blank", boost::blank(), "None", "", "null"},
        ValueForm{"Text", std::string("LCPLL"), "LCPLL", "LCPLL", "\"LCPLL\""},
        ValueForm{"TextNone", std::string("None"), "None", "None", "\"None\""},
        ValueForm{"Unsigned", 4294967295U, "4294967295", "4294967295", "4294967295"},
        ValueForm{"Flag", true, "1", "1", "true"},
        ValueForm{"Single", 0.5F, "0.500000", "0.5", "0.5"},
        ValueForm{"Double", 167.331640625, "167.331641", "167.331640625", "167.331640625"},
        ValueForm{"Infinity", infinity, "inf", "inf", "\"inf\""},
        ValueForm{"NegativeInfinity", -infinity, "-inf", "-inf", "\"-inf\""},
        ValueForm{"NoNumber", std::numeric_limits<double>::quiet_NaN(), "nan", "nan", "\"nan\""},
        ValueForm{"SingleInfinity", std::numeric_limits<float>::infinity(), "inf", "inf",
                  "\"inf\""},
        ValueForm{"List", std::vector<double>{10.3125, 1e-7, infinity},
                  "[10.312500, 0.000000, inf]", "[10.3125, 1e-07, inf]", "[10.3125,1e-07,\"inf\"]"},
        ValueForm{"EmptyList", std::vector<double>{}, "[]", "[]", "[]"}),
    CaseName());

class SnapshotCommand : public CommandLine {};

TEST_F(SnapshotCommand, GivesTheParametersOfEachRate) {
    nlohmann::json request = bundledRequest("sxa_basic");
    nlohmann::json second = request["userParams"][0][2][0];
    second["TX_LINE_RATE"] = 5.0;
    request["userParams"][0][2].push_back(second);
    request["laneUsage"][0]["rxrate"][2] = "B";
    const ProgramResult result =
        runOn(request, "snapshot",
              {"--name", "TX_LINE_RATE", "--channel", "2", "--tx-rate", "1", "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output,
              "channel,tx_rate,rx_rate,name,type,value,rule\n"
              "2,1,0,TX_LINE_RATE,double,5,\n");
}

TEST_F(SnapshotCommand, LosesNothingInMachineForms) {
    nlohmann::json request = bundledRequest("sxb_otu2_fractional");
    request["userParams"][0][0][0]["TX_USER_DATA_WIDTH"] = 48;
    const std::vector<std::string> chosen{"--channel", "0", "--name", "INT_TXOUTCLK_FREQ",
                                          "--format"};
    const auto answerIn = [&](const std::string& format) {
        std::vector<std::string> options = chosen;
        options.push_back(format);
        return runOn(request, "snapshot", options).output;
    };
    EXPECT_EQ(nlohmann::json::parse(answerIn("json")).at(0).at("value"), "inf");
    EXPECT_THAT(answerIn("csv"), HasSubstr(",INT_TXOUTCLK_FREQ,double,inf,"));
}

TEST_F(SnapshotCommand, TakesOptionsBeforeTheRequest) {
    const ProgramResult result = run({"snapshot", "--channel", "0", "--channel", "3", "--name",
                                      "LaneNum", requestPath("sxa_basic"), "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output,
              "channel,tx_rate,rx_rate,name,type,value,rule\n"
              "0,0,0,LaneNum,unsigned,0,\n"
              "3,0,0,LaneNum,unsigned,3,\n");
}

TEST_F(SnapshotCommand, FailsWhenNoVariableMatches) {
    expectFailure(run({"snapshot", requestPath("sxa_basic"), "--channel", "4"}), 1,
                  "channel 3 has transmit rates 0 to 0");
}

TEST_F(SnapshotCommand, TakesNoChannelThatIsNoNumber) {
    expectFailure(run({"snapshot", requestPath("sxa_basic"), "--channel", "x"}), 2, "--channel");
}

TEST_F(CommandLine, TakesOnlyWholeNumbersOfChannelsAndRates) {
    for (const char* const option : {"--channel", "--tx-rate", "--rx-rate"}) {
        for (const char* const value : {"-1", "0x1", "1.0", "1 ", "4294967296", "", "one"}) {
            expectFailure(run({"snapshot", requestPath("sxa_basic"), option, value}), 2,
                          std::string(option) +
                              ": the value must be a whole number from 0 to 4294967295, and is \"" +
                              value + "\"");
        }
    }
}

}  // namespace
}  // namespace lanecfg_test
