#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr const char* subcore = "corvane:ip:gt_subcore_ip:1.0";
constexpr const char* brightspan = "corvane:ip:sxd_lane_cfg_brightspan:1.0";

/// Runs of the subcommand on the model of an IP.
class ModelUpdateCommand : public CommandLine {
  protected:
    ProgramResult update(const std::string& identifier, const std::string& procedure,
                         const std::vector<std::string>& more) const {
        return run(wordsOf(identifier, procedure, more));
    }
    json answerTo(const std::string& identifier, const std::string& procedure,
                  const std::vector<std::string>& values) const {
        return answerOf(wordsOf(identifier, procedure, values));
    }

  private:
    static std::vector<std::string> wordsOf(const std::string& identifier,
                                            const std::string& procedure,
                                            const std::vector<std::string>& more) {
        std::vector<std::string> words = {"model-update", identifier, procedure};
        words.insert(words.end(), more.begin(), more.end());
        return words;
    }
};

TEST_F(ModelUpdateCommand, TellsWhatAnEditChanges) {
    EXPECT_EQ(answerTo(subcore, "update_PARAM_VALUE.TXPROGDIV_FREQ_ENABLE",
                       {"PARAM_VALUE.TX_OUTCLK_SOURCE=TXPROGDIVCLK",
                        "PARAM_VALUE.TXPROGDIV_FREQ_ENABLE=false"}),
              json({{"identifier", subcore},
                    {"procedure", "update_PARAM_VALUE.TXPROGDIV_FREQ_ENABLE"},
                    {"parameter", "PARAM_VALUE.TXPROGDIV_FREQ_ENABLE"},
                    {"values",
                     {{"PARAM_VALUE.TX_OUTCLK_SOURCE", "TXPROGDIVCLK"},
                      {"PARAM_VALUE.TXPROGDIV_FREQ_ENABLE", "true"}}},
                    {"changed", {"PARAM_VALUE.TXPROGDIV_FREQ_ENABLE"}},
                    {"editable", true},
                    {"offered", json::array()}}));
}

TEST_F(ModelUpdateCommand, TellsThatNothingChanges) {
    const json answer = answerTo(brightspan, "RXPROGDIV_FREQ_ENABLE",
                                 {"RX_OUTCLK_SOURCE=RXOUTCLKPMA", "RXPROGDIV_FREQ_ENABLE=false"});
    EXPECT_EQ(answer.at("changed"), json::array());
    EXPECT_EQ(answer.at("editable"), false);
}

TEST_F(ModelUpdateCommand, TellsAValueThatCanNoLongerBeEdited) {
    const json answer =
        answerTo(subcore, "TX_QPLL_FRACN_NUMERATOR",
                 {"TX_PLL_TYPE=LCPLL", "TX_LINE_RATE=16.376", "TX_QPLL_FRACN_NUMERATOR=13"});
    EXPECT_EQ(answer.at("values").at("PARAM_VALUE.TX_QPLL_FRACN_NUMERATOR"), "0");
    EXPECT_EQ(answer.at("changed"), json({"PARAM_VALUE.TX_QPLL_FRACN_NUMERATOR"}));
    EXPECT_EQ(answer.at("editable"), false);
}

TEST_F(ModelUpdateCommand, TellsTheOfferedValuesInTheirOrder) {
    // 10000 * R * M / (2 * N * D) in single precision, between 80 and 1400.
    const json answer =
        answerTo(subcore, "TX_REFCLK_FREQUENCY", {"TX_PLL_TYPE=RPLL", "TX_LINE_RATE=10"});
    EXPECT_EQ(answer.at("values").at("PARAM_VALUE.TX_REFCLK_FREQUENCY"), "250.0000000");
    EXPECT_EQ(answer.at("offered"),
              json({"200.0000000", "250.0000000", "312.5000000", "333.3333435", "400.0000000",
                    "416.6666565", "500.0000000", "625.0000000", "666.6666870", "800.0000000",
                    "833.3333130", "1000.0000000", "1250.0000000", "1333.3333740"}));
}

TEST_F(ModelUpdateCommand, WritesARowForEachOfferedValue) {
    const ProgramResult result =
        update(subcore, "RXPROGDIV_FREQ_SOURCE", {"RX_PLL_TYPE=RPLL", "--format", "csv"});
    EXPECT_THAT(result.output, HasSubstr("\neditable,PARAM_VALUE.RXPROGDIV_FREQ_SOURCE,no\n"
                                         "offered,PARAM_VALUE.RXPROGDIV_FREQ_SOURCE,RPLL\n"));
}

TEST_F(ModelUpdateCommand, EntersParametersThatAreNotGivenAsEmpty) {
    const json answer = answerTo(subcore, "RXPROGDIV_FREQ_ENABLE", {});
    EXPECT_EQ(answer.at("values"), json({{"PARAM_VALUE.RXPROGDIV_FREQ_ENABLE", "false"},
                                         {"PARAM_VALUE.RX_OUTCLK_SOURCE", ""}}));
}

TEST_F(ModelUpdateCommand, TakesNamesWithAndWithoutTheirPrefixes) {
    const json whole = answerTo(subcore, "update_PARAM_VALUE.TXPROGDIV_FREQ_ENABLE",
                                {"PARAM_VALUE.TX_OUTCLK_SOURCE=TXPROGDIVCLK"});
    for (const char* const procedure :
         {"PARAM_VALUE.TXPROGDIV_FREQ_ENABLE", "TXPROGDIV_FREQ_ENABLE"}) {
        EXPECT_EQ(answerTo(subcore, procedure, {"TX_OUTCLK_SOURCE=TXPROGDIVCLK"}), whole)
            << procedure;
    }
}

TEST_F(ModelUpdateCommand, TakesAValueWithAnEqualsSign) {
    const json answer = answerTo(subcore, "TXPROGDIV_FREQ_ENABLE", {"TX_OUTCLK_SOURCE=a=b"});
    EXPECT_EQ(answer.at("values").at("PARAM_VALUE.TX_OUTCLK_SOURCE"), "a=b");
}

TEST_F(ModelUpdateCommand, WritesARowForEachFact) {
    const ProgramResult result =
        update(subcore, "TXPROGDIV_FREQ_ENABLE", {"TX_OUTCLK_SOURCE=TXPROGDIVCLK"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output,
              "ENTRY      PARAMETER                          VALUE\n"
              "changed    PARAM_VALUE.TXPROGDIV_FREQ_ENABLE  true\n"
              "unchanged  PARAM_VALUE.TX_OUTCLK_SOURCE       TXPROGDIVCLK\n"
              "editable   PARAM_VALUE.TXPROGDIV_FREQ_ENABLE  yes\n");
}

TEST_F(ModelUpdateCommand, WritesTheSameRowsAsCsv) {
    const ProgramResult result =
        update(subcore, "TXPROGDIV_FREQ_ENABLE", {"TX_OUTCLK_SOURCE=TXOUTCLKPMA", "--format=csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output,
              "entry,parameter,value\n"
              "changed,PARAM_VALUE.TXPROGDIV_FREQ_ENABLE,false\n"
              "unchanged,PARAM_VALUE.TX_OUTCLK_SOURCE,TXOUTCLKPMA\n"
              "editable,PARAM_VALUE.TXPROGDIV_FREQ_ENABLE,no\n");
}

TEST_F(ModelUpdateCommand, WarnsOfAParameterThatTheProcedureDoesNotTake) {
    const ProgramResult result = update(subcore, "TXPROGDIV_FREQ_ENABLE", {"TX_OUTCLK=x"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors,
                HasSubstr("WARNING: The procedure does not take TX_OUTCLK. It takes "
                          "PARAM_VALUE.TXPROGDIV_FREQ_ENABLE, PARAM_VALUE.TX_OUTCLK_SOURCE."));
    EXPECT_THAT(result.output, HasSubstr("unchanged  TX_OUTCLK "));
}

TEST_F(ModelUpdateCommand, WithAnUnknownIdentifierIsWrongUsageAndTellsTheKnownOnes) {
    expectFailure(update("corvane:ip:gt_subcore_ip:2.0", "TXPROGDIV_FREQ_ENABLE", {}), 2,
                  "No design-rule model is registered for \"corvane:ip:gt_subcore_ip:2.0\". There "
                  "are models for corvane:ip:sable_gt_subcore_ip:99.9, "
                  "corvane:ip:gt_subcore_ip:1.0, corvane:ip:sxd_lane_cfg_brightspan:1.0.");
}

TEST_F(ModelUpdateCommand, WithAnUnknownProcedureIsWrongUsageAndTellsTheKnownOnes) {
    const ProgramResult result = update(subcore, "update_PARAM_VALUE.TX_LINE_RATE", {});
    expectFailure(result, 2,
                  "The model has no procedure \"update_PARAM_VALUE.TX_LINE_RATE\". Its procedures "
                  "are update_PARAM_VALUE.RXPROGDIV_FREQ_ENABLE, ");
    EXPECT_THAT(result.errors, HasSubstr("update_PARAM_VALUE.TXPROGDIV_FREQ_ENABLE"));
}

TEST_F(ModelUpdateCommand, WithAWordThatIsNoNameAndValueIsWrongUsage) {
    for (const char* const word : {"TX_OUTCLK_SOURCE", "=TXPROGDIVCLK", "=", ""}) {
        expectFailure(update(subcore, "TXPROGDIV_FREQ_ENABLE", {word}), 2,
                      "\"" + std::string(word) + "\" does not have the form name=value");
    }
}

TEST_F(ModelUpdateCommand, WithAParameterGivenTwiceIsWrongUsage) {
    for (const char* const again : {"TX_OUTCLK_SOURCE=b", "PARAM_VALUE.TX_OUTCLK_SOURCE=a"}) {
        expectFailure(update(subcore, "TXPROGDIV_FREQ_ENABLE", {"TX_OUTCLK_SOURCE=a", again}), 2,
                      "PARAM_VALUE.TX_OUTCLK_SOURCE is given twice.");
    }
}

TEST_F(ModelUpdateCommand, WithATextWhereANumberIsTakenIsWrongUsageAndNamesIt) {
    expectFailure(update(subcore, "TX_REFCLK_FREQUENCY", {"TX_PLL_TYPE=RPLL", "TX_LINE_RATE=fast"}),
                  2, "The procedure takes a number where PARAM_VALUE.TX_LINE_RATE is \"fast\".");
}

TEST_F(ModelUpdateCommand, NamesEveryTextWhereANumberIsTaken) {
    expectFailure(update(subcore, "TX_REFCLK_FREQUENCY",
                         {"TX_LINE_RATE=fast", "TX_QPLL_FRACN_NUMERATOR=1/2"}),
                  2,
                  "PARAM_VALUE.TX_LINE_RATE is \"fast\" and "
                  "PARAM_VALUE.TX_QPLL_FRACN_NUMERATOR is \"1/2\".");
}

TEST_F(ModelUpdateCommand, NeedsIdentifierAndProcedure) {
    expectFailure(run({"model-update"}), 2, "identifier is required");
    expectFailure(run({"model-update", subcore}), 2, "procedure is required");
}

}  // namespace
}  // namespace lanecfg_test
