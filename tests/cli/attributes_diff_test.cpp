#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

/// Comparisons of answers about 10GBASE-R on four lanes of SXB.
class AttributesDiff : public CommandLine {
  protected:
    /// The request with its receivers at half of the line rate.
    static json slowReceivers() {
        json request = bundledRequest("sxb_10gbase_r");
        for (json& lane : request.at("userParams").at(1)) {
            lane.at(0).at("RX_LINE_RATE") = 5.15625;
        }
        return request;
    }

    /// The request with a second rate, at which the receivers run at half of the line rate. The
    /// lanes but for the first ones have one rate.
    static json twoRatesOfLanes(std::size_t lanes) {
        json request = bundledRequest("sxb_10gbase_r");
        json first = request.at("laneUsage").at(0);
        json others = first;
        for (const char* const key : {"tx", "rx"}) {
            first.at(key) = json::array();
            others.at(key) = json::array();
            for (std::size_t lane = 0; lane < 4; ++lane) {
                (lane < lanes ? first : others).at(key).push_back(lane);
            }
        }
        first.at("rates") = {0, 1};
        others.at("txrate") = others.at("rxrate") = {"B", "B", "B", "B"};
        request.at("laneUsage") = lanes == 4 ? json::array({first}) : json::array({first, others});
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            for (std::size_t direction = 0; direction < 2; ++direction) {
                json& rates = request.at("userParams").at(direction).at(lane);
                rates.push_back(rates.at(0));
            }
            request.at("userParams").at(1).at(lane).at(1).at("RX_LINE_RATE") = 5.15625;
        }
        return request;
    }

    std::string write(const json& request, const std::string& name = "request.json") const {
        return directory.write(name, request.dump());
    }

    static json rowNamed(const json& rows, const std::string& name) {
        for (const json& row : rows) {
            if (row.at("name") == name) {
                return row;
            }
        }
        ADD_FAILURE() << "no row " << name;
        return {};
    }

    /// Expects that the rows of a comparison are what differs between two answers.
    static void expectDifferences(const json& rows, const json& first, const json& second) {
        json expected = json::object();
        const auto enter = [&expected](const json& from, const json& to, const char* side) {
            for (const auto& [name, value] : from.items()) {
                if (!to.contains(name) || to.at(name) != value) {
                    expected[name][side] = value;
                }
            }
        };
        enter(first, second, "first");
        enter(second, first, "second");
        json compared = json::object();
        for (const json& row : rows) {
            for (const char* const side : {"first", "second"}) {
                if (!row.at(side).is_null()) {
                    compared[row.at("name").get<std::string>()][side] = row.at(side);
                }
            }
        }
        EXPECT_EQ(compared, expected);
    }

    const std::string tenGigabit_ = requestPath("sxb_10gbase_r");
};

// The LCPLL gives 10.3125 GHz, twice for a bit. Half of the line rate wants one more division by
// two, so the code of the divider is one more.
constexpr const char* halvedChange = "RXOUT_DIV 1 -> 2";

TEST_F(AttributesDiff, IsAllThatDiffersBetweenTheTwoAnswers) {
    const std::string slow = write(slowReceivers());
    const json rows = answerOf({"attributes", "--diff", tenGigabit_, slow});
    EXPECT_NE(rows, json::array());
    expectDifferences(rows, answerOf({"attributes", tenGigabit_}), answerOf({"attributes", slow}));
}

TEST_F(AttributesDiff, ShowsTheFieldsOfARegister) {
    const json row =
        rowNamed(answerOf({"attributes", "--diff", tenGigabit_, write(slowReceivers())}),
                 "CH2_PIPE_CTRL_CFG3");
    const json expected = {{{"field", "RXOUT_DIV"}, {"first", 1}, {"second", 2}}};
    EXPECT_EQ(row.at("changes"), expected);
}

TEST_F(AttributesDiff, WritesALineForEachRegisterAndTheirCount) {
    const std::string slow = write(slowReceivers());
    const ProgramResult result = run({"attributes", "--diff", tenGigabit_, slow});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.output, testing::StartsWith("NAME "));
    EXPECT_THAT(result.output,
                testing::ContainsRegex("\nCH0_PIPE_CTRL_CFG3 +0x[0-9a-f]{8} +0x[0-9a-f]{8} +" +
                                       std::string(halvedChange) + "\n"));
    EXPECT_THAT(result.output,
                HasSubstr("\nFrom " + tenGigabit_ + " (SXB) to " + slow + " (SXB): "));
    EXPECT_THAT(result.output,
                testing::EndsWith(" changed, 0 only in the first, 0 only in the second.\n"));
}

TEST_F(AttributesDiff, OfARequestWithItselfIsNoneAndDone) {
    const ProgramResult result =
        run({"attributes", "--diff", tenGigabit_, tenGigabit_, "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "name,first,second,changes\n");
}

TEST_F(AttributesDiff, ComparesRequestsOfDifferentFamilies) {
    const std::string other = requestPath("sxa_basic");
    const json rows = answerOf({"attributes", "--diff", tenGigabit_, other});
    expectDifferences(rows, answerOf({"attributes", tenGigabit_}), answerOf({"attributes", other}));
    // Only SXB has a list of registers that no rate changes.
    EXPECT_EQ(rowNamed(rows, "STAT_NPI_REG_LIST").at("second"), nullptr);
}

TEST_F(AttributesDiff, ComparesOneRequestOnTwoRuleSets) {
    const std::string request = requestPath("sxa_basic");
    const auto answerIgnoringErrors = [this](const std::vector<std::string>& arguments) {
        const ProgramResult result = run(arguments);
        // SXB misses parameters that SXA does without, and goes on.
        EXPECT_EQ(result.exitCode, 1);
        return json::parse(result.output);
    };
    const json rows = answerIgnoringErrors({"attributes", "--diff", request, request, "--rules",
                                            "SXA", "SXB:live", "--format", "json"});
    expectDifferences(
        rows, answerOf({"attributes", request}),
        answerIgnoringErrors({"attributes", request, "--family", "SXB", "--format", "json"}));
}

TEST_F(AttributesDiff, ShowsWhatAMoveToAnotherRuleSetChanges) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> moves = {
        {"SXC", {"--family", "SXC"}}, {"SXB:stable", {"--selector", "stable"}}};
    for (const auto& [rules, options] : moves) {
        const json rows =
            answerOf({"attributes", "--diff", tenGigabit_, tenGigabit_, "--rules", "SXB", rules});
        EXPECT_NE(rows, json::array()) << rules;
        std::vector<std::string> moved = {"attributes", tenGigabit_};
        moved.insert(moved.end(), options.begin(), options.end());
        expectDifferences(rows, answerOf({"attributes", tenGigabit_}), answerOf(moved));
    }
}

TEST_F(AttributesDiff, TakesTheRulesInPlaceOfTheRequestsOwn) {
    json request = bundledRequest("sxb_10gbase_r");
    request["family"] = "SXA";
    request["selector"] = "stable";
    EXPECT_EQ(answerOf({"attributes", "--diff", write(request), tenGigabit_, "--rules", "SXB",
                        "SXB:live"}),
              json::array());
}

TEST_F(AttributesDiff, FailsWithTheNameOfTheRequestAtFault) {
    expectFailure(run({"attributes", "--diff", tenGigabit_, "/nonexistent.json"}), 1,
                  "/nonexistent.json");
}

TEST_F(AttributesDiff, TakesTwoRequests) {
    expectFailure(run({"attributes", "--diff", tenGigabit_}), 2, "--diff");
    expectFailure(run({"attributes", "--diff", tenGigabit_, tenGigabit_, tenGigabit_}), 2,
                  "request excludes --diff");
}

TEST_F(AttributesDiff, TakesRuleSetsWithTheTwoRequestsOnly) {
    expectFailure(run({"attributes", tenGigabit_, "--rules", "SXA", "SXB"}), 2, "requires --diff");
    expectFailure(run({"attributes", "--diff", tenGigabit_, tenGigabit_, "--rules", "SXA", "SXB",
                       "--family", "SXA"}),
                  2, "--family");
}

TEST_F(AttributesDiff, NamesTheRuleSetsForAnUnknownOne) {
    expectFailure(
        run({"attributes", "--diff", tenGigabit_, tenGigabit_, "--rules", "SXB", "SXB:newest"}), 2,
        "\"SXB:newest\" names no rules; there are SXA, SXB, SXB:stable");
}

TEST_F(AttributesDiff, NeedsARequest) {
    expectFailure(run({"attributes"}), 2, "request is required, or --diff with two of them");
}

class AttributesRates : public AttributesDiff {};

TEST_F(AttributesRates, AreComparedChannelByChannel) {
    const json rows = answerOf({"attributes", write(twoRatesOfLanes(4)), "--rates", "0_0", "1_1"});
    const json expected = {{{"field", "RXOUT_DIV"}, {"first", 1}, {"second", 2}}};
    for (const int channel : {0, 1, 2, 3}) {
        json own = json::array();
        for (const json& row : rows) {
            if (row.at("channel") == channel) {
                own.push_back(row);
            }
        }
        EXPECT_EQ(rowNamed(own, "PIPE_CTRL_CFG3").at("changes"), expected);
    }
}

TEST_F(AttributesRates, ShowTheRegistersThatThePassesHaveOtherwise) {
    const std::string request = write(twoRatesOfLanes(4));
    const json registers = referenceFile("SXB", "registers.json");
    const auto wordsAt = [&](const std::string& rate) {
        json words = json::object();
        for (const json& row : answerOf(
                 {"snapshot", request, "--channel", "1", "--tx-rate", rate, "--rx-rate", rate})) {
            const std::string name = row.at("name");
            if (registers.contains(name) && !row.at("value").is_null()) {
                words[name] = row.at("value").is_string()
                                  ? row.at("value").get<std::string>()
                                  : std::to_string(row.at("value").get<unsigned>());
            }
        }
        return words;
    };
    json own = json::array();
    for (const json& row : answerOf({"attributes", request, "--rates", "0_0", "1_1"})) {
        if (row.at("channel") == 1) {
            own.push_back(row);
        }
    }
    expectDifferences(own, wordsAt("0"), wordsAt("1"));
}

TEST_F(AttributesRates, MayStandBeforeTheRequest) {
    const std::string request = write(twoRatesOfLanes(4));
    EXPECT_EQ(answerOf({"attributes", "--rates", "0_0", "1_1", request}),
              answerOf({"attributes", request, "--rates", "0_0", "1_1"}));
}

TEST_F(AttributesRates, LeaveOutAChannelThatHasNotBoth) {
    const ProgramResult result = runOn(twoRatesOfLanes(2), "attributes", {"--rates", "0_0", "1_1"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr("\n      1  PIPE_CTRL_CFG3"));
    EXPECT_THAT(result.output, testing::Not(HasSubstr("\n      2  ")));
    EXPECT_THAT(result.errors,
                HasSubstr("WARNING: Channel 2 has no passes of both rates 0_0 and 1_1"));
}

TEST_F(AttributesRates, FailWhenNoChannelHasBothAndTellWhichThereAre) {
    expectFailure(run({"attributes", tenGigabit_, "--rates", "0_0", "0_1"}), 1,
                  "No channel has passes of both rates 0_0 and 0_1. There are: channel 0 has "
                  "transmit rates 0 to 0 and receive rates 0 to 0; channel 1");
}

TEST_F(AttributesRates, AreTwoPairsOfNumbers) {
    for (const std::string pair : {"1", "1_", "_1", "1_x", "x_1", "1-1", "1_1_1", "", "-1_0"}) {
        EXPECT_EQ(run({"attributes", tenGigabit_, "--rates", "0_0", pair}).exitCode, 2) << pair;
    }
    expectFailure(run({"attributes", tenGigabit_, "--rates", "0_0", "1_x"}), 2,
                  "\"1_x\" is no pair of rates");
}

TEST_F(AttributesRates, AreOfOneRequest) {
    expectFailure(run({"attributes", "--diff", tenGigabit_, tenGigabit_, "--rates", "0_0", "1_1"}),
                  2, "excludes");
}

}  // namespace
}  // namespace lanecfg_test
