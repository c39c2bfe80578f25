#include "usage_fault.h"

#include "cli/command_line.h"

namespace lanecfg_test {
namespace {

using sable_lanecfg::tool::usageFault;

/// Parts of a request, and the fault in them; none where it is empty.
struct UsageCase {
    std::string name;
    std::string root;
    std::string fault;
};

/// A request of one group of lanes, good but for one member.
std::string laneWith(const std::string& member, const std::string& value) {
    nlohmann::json lane = {{"group", "A"}, {"tx", {0, 1}},         {"rx", {0, 1}},
                           {"rates", {0}}, {"txrate", {"A", "A"}}, {"rxrate", {"A", "A"}}};
    lane[member] = nlohmann::json::parse(value);
    return nlohmann::json({{"laneUsage", {lane}}}).dump();
}

class UsageFault : public testing::TestWithParam<UsageCase> {};

TEST_P(UsageFault, IsTold) {
    EXPECT_EQ(usageFault(nlohmann::json::parse(GetParam().root)), GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(
    LaneUsage, UsageFault,
    testing::Values(
        UsageCase{"GoodLanes",
                  R"({"laneUsage": [{"group": "A", "tx": [0, "1"], "rx": "", "txrate": ["A", 1],
                      "rxrate": {}, "rates": []}]})",
                  ""},
        UsageCase{"DictionaryForm", R"({"laneUsage": {"0": {"tx": "0"}}})", ""},
        UsageCase{"LaneThatIsNoObject", R"({"laneUsage": ["A"]})",
                  "the key \"laneUsage[0]\" must be an object, and is \"A\"."},
        UsageCase{"LaneWithoutRates",
                  R"({"laneUsage": [{"group": "A", "tx": [], "rx": [], "txrate": [],
                      "rxrate": []}]})",
                  "the key \"laneUsage[0].rates\" is missing; a group of lanes has group, tx, rx, "
                  "txrate, rxrate and rates."},
        UsageCase{"LaneAsWord", laneWith("tx", R"([0, "one"])"),
                  "the key \"laneUsage[0].tx[1]\" must be a whole number from 0 on, and is "
                  "\"one\"."},
        UsageCase{"NegativeLane", laneWith("rx", "[-1]"),
                  "the key \"laneUsage[0].rx[0]\" must be a whole number from 0 on, and is -1."},
        UsageCase{"LaneBeyondWholeNumbers", laneWith("tx", "[2147483648]"),
                  "the key \"laneUsage[0].tx[0]\" must be a whole number from 0 on, and is "
                  "2147483648."},
        UsageCase{
            "RateWithAFraction", laneWith("rates", "[0.5]"),
            "the key \"laneUsage[0].rates[0]\" must be a whole number from 0 on, and is 0.5."},
        UsageCase{"GroupAsList", laneWith("group", R"(["A"])"),
                  "the key \"laneUsage[0].group\" must be a text, and is a list."},
        UsageCase{"GroupOfNoValue", laneWith("group", "null"),
                  "the key \"laneUsage[0].group\" must be a text, and is null."},
        UsageCase{"LanesAsNumber", laneWith("tx", "0"),
                  "the key \"laneUsage[0].tx\" must be a list, and is 0."},
        UsageCase{"LanesAsText", laneWith("rx", R"("0,1")"),
                  "the key \"laneUsage[0].rx\" must be a list, and is \"0,1\"."},
        UsageCase{"LanesAsObject", laneWith("rx", R"({"a": 0})"),
                  "the key \"laneUsage[0].rx\" must be a list, and is an object."},
        UsageCase{"RateNameAsList", laneWith("txrate", R"(["A", ["B"]])"),
                  "the key \"laneUsage[0].txrate[1]\" must be a text, and is a list."},
        UsageCase{"RatesOfNoValue", laneWith("rates", "null"),
                  "the key \"laneUsage[0].rates\" must be a list, and is null."}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    QuadUsage, UsageFault,
    testing::Values(
        UsageCase{"GoodQuads",
                  R"({"quadUsage": {"TX": [{"q0": ["lane0"], "IS_CURRENT_QUAD": "1",
                      "MSTRCLK": ["a"]}], "RX": {"q0": {"q0": {"q0": []}}}, "N": ""}})",
                  ""},
        UsageCase{"QuadsAsText", R"({"quadUsage": {"TX": "q0"}})",
                  "the key \"quadUsage.TX\" must be a list of quads, and is \"q0\"."},
        UsageCase{"QuadAsText", R"({"quadUsage": {"TX": [{}, "q0"]}})",
                  "the key \"quadUsage.TX[1]\" must be an object, and is \"q0\"."},
        UsageCase{"QuadAsTextBelowItsName", R"({"quadUsage": {"TX": {"q0": {"q0": 7}}}})",
                  "the key \"quadUsage.TX.q0.q0\" must be an object, and is 7."},
        UsageCase{"QuadBelowAnotherName", R"({"quadUsage": {"TX": {"q0": {"q1": {}}}}})",
                  "the key \"quadUsage.TX.q0\" must be an object that holds the quad under the "
                  "same key. Quads may also stand in a list."},
        UsageCase{
            "QuadBelowANameWithADot", R"({"quadUsage": {"TX": {"q.0": {"q.0": {}}}}})",
            "the key \"quadUsage.TX.q.0\" can't name a quad by a name with a dot. Put the quad "
            "into a list, where its name may have one."},
        UsageCase{"QuadInAListByANameWithADot", R"({"quadUsage": {"TX": [{"q.0": ["a"]}]}})", ""},
        UsageCase{"CurrentQuadOfNoValue", R"({"quadUsage": {"TX": [{"IS_CURRENT_QUAD": null}]}})",
                  "the key \"quadUsage.TX[0].IS_CURRENT_QUAD\" must be true, false, 1 or 0, and is "
                  "null."},
        UsageCase{"CurrentQuadInCapitals",
                  R"({"quadUsage": {"TX": [{"IS_CURRENT_QUAD": "TRUE"}]}})",
                  "the key \"quadUsage.TX[0].IS_CURRENT_QUAD\" must be true, false, 1 or 0, and is "
                  "\"TRUE\"."},
        UsageCase{"ChannelsAsText", R"({"quadUsage": {"TX": [{"q0": "lane0"}]}})",
                  "the key \"quadUsage.TX[0].q0\" must be a list, and is \"lane0\"."},
        UsageCase{"ClocksAsText", R"({"quadUsage": {"TX": [{"MSTRCLK": "lane0"}]}})",
                  "the key \"quadUsage.TX[0].MSTRCLK\" must be a list, and is \"lane0\"."}),
    CaseName());

}  // namespace
}  // namespace lanecfg_test
