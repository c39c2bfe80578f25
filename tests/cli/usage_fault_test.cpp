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

class UsageFault : public testing::TestWithParam<UsageCase> {};

TEST_P(UsageFault, IsTold) {
    EXPECT_EQ(usageFault(nlohmann::json::parse(GetParam().root)), GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(
    LaneUsage, UsageFault,
    testing::Values(
        UsageCase{"GoodLanes",
                  R"({"laneUsage": [{"group": "A", "tx": [0, "1"], "rx": "", "txrate": ["A", 1],
                      "rxrate": {}, "rates": []}, {}]})",
                  ""},
        UsageCase{"DictionaryForm", R"({"laneUsage": {"0": {"tx": "0"}}})", ""},
        UsageCase{"GroupAsList", R"({"laneUsage": [{"group": ["A"]}]})",
                  "the key \"laneUsage[0].group\" must be a text, and is a list."},
        UsageCase{"GroupOfNoValue", R"({"laneUsage": [{}, {"group": null}]})",
                  "the key \"laneUsage[1].group\" must be a text, and is null."},
        UsageCase{"LanesAsNumber", R"({"laneUsage": [{"tx": 0}]})",
                  "the key \"laneUsage[0].tx\" must be a list, and is 0."},
        UsageCase{"LanesAsText", R"({"laneUsage": [{"rx": "0,1"}]})",
                  "the key \"laneUsage[0].rx\" must be a list, and is \"0,1\"."},
        UsageCase{"LanesAsObject", R"({"laneUsage": [{"rx": {"a": 0}}]})",
                  "the key \"laneUsage[0].rx\" must be a list, and is an object."},
        UsageCase{"RateNameAsList", R"({"laneUsage": [{"txrate": ["A", ["B"]]}]})",
                  "the key \"laneUsage[0].txrate[1]\" must be a text, and is a list."},
        UsageCase{"RatesOfNoValue", R"({"laneUsage": [{"rates": null}]})",
                  "the key \"laneUsage[0].rates\" must be a list, and is null."}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    QuadUsage, UsageFault,
    testing::Values(
        UsageCase{"GoodQuads",
                  R"({"quadUsage": {"TX": [{"q0": ["lane0"], "IS_CURRENT_QUAD": "1",
                      "MSTRCLK": ["a"]}], "RX": {"q0": {"q0": {"q0": []}}, "q1": {}}, "N": ""}})",
                  ""},
        UsageCase{"QuadsAsText", R"({"quadUsage": {"TX": "q0"}})",
                  "the key \"quadUsage.TX\" must be a list of quads, and is \"q0\"."},
        UsageCase{"QuadAsText", R"({"quadUsage": {"TX": [{}, "q0"]}})",
                  "the key \"quadUsage.TX[1]\" must be an object, and is \"q0\"."},
        UsageCase{"QuadAsTextBelowItsName", R"({"quadUsage": {"TX": {"q0": {"q0": 7}}}})",
                  "the key \"quadUsage.TX.q0.q0\" must be an object, and is 7."},
        UsageCase{"ChannelsAsText", R"({"quadUsage": {"TX": [{"q0": "lane0"}]}})",
                  "the key \"quadUsage.TX[0].q0\" must be a list, and is \"lane0\"."},
        UsageCase{"ClocksAsText", R"({"quadUsage": {"TX": [{"MSTRCLK": "lane0"}]}})",
                  "the key \"quadUsage.TX[0].MSTRCLK\" must be a list, and is \"lane0\"."}),
    CaseName());

}  // namespace
}  // namespace lanecfg_test
