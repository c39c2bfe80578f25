#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

class ModelsCommand : public CommandLine {
  protected:
    /// Identifiers of the answer in their order, each once.
    static std::vector<std::string> identifiersOf(const nlohmann::json& answer) {
        std::vector<std::string> identifiers;
        for (const nlohmann::json& row : answer) {
            const std::string identifier = row.at("identifier");
            if (identifiers.empty() || identifiers.back() != identifier) {
                identifiers.push_back(identifier);
            }
        }
        return identifiers;
    }

    /// Arguments of a procedure, null when the model of the identifier has no such procedure.
    static nlohmann::json argumentsOf(const nlohmann::json& answer, const std::string& identifier,
                                      const std::string& procedure) {
        for (const nlohmann::json& row : answer) {
            if (row.at("identifier") == identifier && row.at("procedure") == procedure) {
                return row.at("arguments");
            }
        }
        return nullptr;
    }
};

TEST_F(ModelsCommand, ListsTheIdentifiersInTheOrderOfTheirRegistration) {
    EXPECT_THAT(identifiersOf(answerOf({"models"})),
                ElementsAre("corvane:ip:sable_gt_subcore_ip:99.9", "corvane:ip:gt_subcore_ip:1.0",
                            "corvane:ip:sxd_lane_cfg_brightspan:1.0"));
}

TEST_F(ModelsCommand, TellsTheArgumentsOfTheProceduresOfEveryModel) {
    const nlohmann::json answer = answerOf({"models"});
    for (const std::string& identifier : identifiersOf(answer)) {
        EXPECT_EQ(
            argumentsOf(answer, identifier, "update_PARAM_VALUE.TXPROGDIV_FREQ_ENABLE"),
            nlohmann::json({"PARAM_VALUE.TXPROGDIV_FREQ_ENABLE", "PARAM_VALUE.TX_OUTCLK_SOURCE"}))
            << identifier;
    }
}

TEST_F(ModelsCommand, ListsEveryProcedureOfAModel) {
    std::map<std::string, int> procedures;
    for (const nlohmann::json& row : answerOf({"models"})) {
        ++procedures[row.at("identifier")];
    }
    EXPECT_THAT(procedures, ElementsAre(Pair("corvane:ip:gt_subcore_ip:1.0", 12),
                                        Pair("corvane:ip:sable_gt_subcore_ip:99.9", 12),
                                        Pair("corvane:ip:sxd_lane_cfg_brightspan:1.0", 8)));
}

TEST_F(ModelsCommand, WritesALineForEachProcedure) {
    const ProgramResult result = run({"models"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_THAT(
        result.output,
        testing::ContainsRegex("^IDENTIFIER +PROCEDURE +ARGUMENTS\n"
                               "corvane:ip:sable_gt_subcore_ip:99.9 +"
                               "update_PARAM_VALUE.RXPROGDIV_FREQ_ENABLE +"
                               "PARAM_VALUE.RXPROGDIV_FREQ_ENABLE PARAM_VALUE.RX_OUTCLK_SOURCE\n"));
}

TEST_F(ModelsCommand, WritesTheArgumentsIntoOneFieldOfCsv) {
    const ProgramResult result = run({"models", "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output,
                HasSubstr("\ncorvane:ip:gt_subcore_ip:1.0,update_PARAM_VALUE.TXPROGDIV_FREQ_ENABLE,"
                          "PARAM_VALUE.TXPROGDIV_FREQ_ENABLE PARAM_VALUE.TX_OUTCLK_SOURCE\n"));
}

TEST_F(ModelsCommand, TakesNoArgument) {
    expectFailure(run({"models", "corvane:ip:gt_subcore_ip:1.0"}), 2,
                  "corvane:ip:gt_subcore_ip:1.0");
}

}  // namespace
}  // namespace lanecfg_test
