#include "shared_word_warnings.h"

#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::Not;

constexpr std::array<std::size_t, 2> directions{0, 1};

/// Takes the lane's parameters away.
void empty(json& request, std::size_t lane) {
    for (const std::size_t direction : directions) {
        request["userParams"][direction][lane] = json::array();
    }
}

/// Gives a lane the parameters that another one has at its first rate.
void giveFirstRate(json& request, std::size_t from, std::size_t to,
                   const std::vector<std::size_t>& sides = {0, 1}) {
    for (const std::size_t direction : sides) {
        json& lanes = request["userParams"][direction];
        lanes[to] = json::array({lanes[from][0]});
    }
}

/// The text with which a warning about an idle lane ends.
std::string giveText(const std::string& idle, const std::string& user) {
    return ". Give lane " + idle + " the parameters that lane " + user +
           " has at its first rate, in both directions, and leave it out of laneUsage.\n";
}

class SharedWords : public CommandLine {
  protected:
    std::string messagesAbout(const json& request) const {
        const ProgramResult result = runOn(request, "attributes");
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return result.errors;
    }

    std::string warningStart() const {
        return "WARNING: Request " + directory.file("request.json") + ": ";
    }
};

/// PCIe on lane 0, the others without parameters.
json bareLane() {
    json request = bundledRequest("sxb_pcie_gen4_x1");
    empty(request, 1);
    empty(request, 3);
    return request;
}

TEST_F(SharedWords, OfAnIdleLaneAreNamedWithTheWayOut) {
    const std::string messages = messagesAbout(bareLane());
    EXPECT_EQ(messages,
              warningStart() +
                  "the clock words of lanes 0 and 1 are those of lane 1, which is not used; lane 0 "
                  "needs others in HSCLK0_LCPLL_CFG0, HSCLK0_LCPLL_CFG2, HSCLK0_LCPLL_LGC_CFG1" +
                  giveText("1", "0") + warningStart() +
                  "the words of the quad are those of lane 3, which is not used; lane 0 needs "
                  "others in PIN_CFG0" +
                  giveText("3", "0"));
}

TEST_F(SharedWords, AreRightByTheWayOut) {
    json request = bareLane();
    giveFirstRate(request, 0, 1);
    giveFirstRate(request, 0, 3);
    EXPECT_EQ(messagesAbout(request), "");
}

TEST_F(SharedWords, OfAFractionAreRightByTheWayOut) {
    json request = bundledRequest("sxb_otu2_fractional");
    request["laneUsage"][0]["tx"] = request["laneUsage"][0]["rx"] = {0};
    request["laneUsage"][0]["txrate"] = request["laneUsage"][0]["rxrate"] = {"A"};
    json bare = request;
    empty(bare, 1);
    EXPECT_THAT(messagesAbout(bare),
                HasSubstr("lane 0 needs others in HSCLK0_LCPLL_CFG0, HSCLK0_LCPLL_CFG2, "
                          "HSCLK0_LCPLL_LGC_CFG1" +
                          giveText("1", "0")));
    // Lane 1 keeps its parameters, which are those of lane 0.
    EXPECT_EQ(messagesAbout(request), "");
    const json answer = answerOf({"attributes", directory.file("request.json")});
    EXPECT_EQ(answer.at("HSCLK0_LCPLL_CFG0"), std::to_string(0x1181c));
    EXPECT_EQ(answer.at("HSCLK0_LCPLL_CFG2"), std::to_string(0x1400cdd));
    EXPECT_EQ(answer.at("HSCLK0_LCPLL_LGC_CFG1"), std::to_string(0x6594));
    // Lane 1 is powered down and resets with no PLL.
    EXPECT_EQ(answer.at("MST_RESET_CFG"), std::to_string(0x1ad6b501));
}

TEST_F(SharedWords, ThatTheLastRateLeftInAnIdleLaneAreNamed) {
    json request = bundledRequest("sxb_cpri");
    for (json& usage : request["laneUsage"]) {
        usage["rates"].erase(5);
    }
    for (const std::size_t direction : directions) {
        for (json& rates : request["userParams"][direction]) {
            if (rates.size() > 5) {
                rates.erase(5);
            }
        }
    }
    EXPECT_THAT(messagesAbout(request),
                HasSubstr("lane 0 needs others in HSCLK0_LCPLL_CFG2" + giveText("1", "0")));
}

TEST_F(SharedWords, OfALaneThatOnlyTransmitsComeFromItsReceiver) {
    json request = bundledRequest("sxb_partly_used");
    request["userParams"][1][3] = json::array();
    EXPECT_EQ(messagesAbout(request),
              warningStart() +
                  "the clock words of lanes 2 and 3 are those of lane 3, which doesn't use the "
                  "LCPLL; lane 2 needs others in HSCLK1_LCPLL_REFCLK_IPS. Give lane 3 the receive "
                  "parameters that lane 2 has at its first rate, and leave its receiver out of "
                  "laneUsage.\n");
    giveFirstRate(request, 2, 3, {1});
    EXPECT_EQ(messagesAbout(request), "");
}

TEST_F(SharedWords, OfALaneInUseCanBeExchanged) {
    json request = bundledRequest("sxb_25g_and_10g");
    for (const std::size_t direction : directions) {
        for (json& rate : request["userParams"][direction][0]) {
            rate["PCIE_ENABLE"] = true;
        }
    }
    const std::string messages = messagesAbout(request);
    EXPECT_THAT(messages, HasSubstr("those of lane 1, which doesn't use the LCPLL; lane 0 needs "
                                    "others in HSCLK0_LCPLL_LGC_CFG1. Exchange the two lanes, or "
                                    "take these words from the pass of lane 0, which lanecfg "
                                    "snapshot shows.\n"));
}

TEST_F(SharedWords, OfABlockOfTwoChannelsAreNamedToo) {
    // Channel 0 in place of channel 1.
    json request = bundledRequest("sxd4_one_channel");
    json& usage = request["laneUsage"][0];
    usage["tx"] = usage["rx"] = {0};
    giveFirstRate(request, 1, 0);
    json bare = request;
    empty(bare, 1);
    EXPECT_THAT(messagesAbout(bare), HasSubstr("lane 0 needs others in HSCLK0_A_CFG"));
    EXPECT_THAT(messagesAbout(request), Not(HasSubstr("WARNING")));
}

TEST_F(SharedWords, AreNoMatterWhereTheChannelsDoNotFit) {
    json request = bundledRequest("sxb_does_not_pack");
    for (const std::size_t direction : directions) {
        request["userParams"][direction][0][0]["PCIE_ENABLE"] = true;
    }
    const std::string messages = messagesAbout(request);
    EXPECT_THAT(messages, HasSubstr("don't fit into a quad"));
    EXPECT_THAT(messages, Not(HasSubstr("needs others")));
}

}  // namespace
}  // namespace lanecfg_test
