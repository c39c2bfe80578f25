#include "sxb_field_case.h"
#include "sxb_pll_sides.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

const char* const alignmentMode = "RX_PHALIGN_CFG5.CMN_FAB_CLK_PHALIGN_MODE";

/// A position that counts for the rule of a side, with another word where it must not look.
VariableValues transmitPosition(const std::string& word, unsigned int mode) {
    const bool isCommon = mode == 3;
    return {{alignmentMode, mode},
            {"TX_SYNCDONE_POSITION", isCommon ? "elsewhere"s : word},
            {"RX_SYNCDONE_POSITION", isCommon ? word : "elsewhere"s}};
}

VariableValues receivePosition(const std::string& word) {
    return {{alignmentMode, 3U},
            {"TX_SYNCDONE_POSITION", "elsewhere"s},
            {"RX_SYNCDONE_POSITION", word}};
}

/// Every position word with what the three selects of a side are for it.
struct PositionRow {
    std::string word;
    unsigned int north;
    unsigned int south;
    unsigned int consumption;
};

std::vector<FieldCase> positionCases() {
    const std::vector<PositionRow> rows{{"IM", 0, 0, 0},
                                        {"single", 0, 0, 0},
                                        {"above", 3, 0, 1},
                                        {"below", 0, 3, 4},
                                        {"", 0, 3, 4}};
    std::vector<FieldCase> cases;
    for (const PositionRow& row : rows) {
        for (const TestedSide& side : testedSides()) {
            const std::string field = "PIPE_CTRL_CFG9." + side.word + "SYNCDONE_";
            const VariableValues narrow{{side.coding, "64B66B_ASYNC"s},
                                        {side.word + "_USER_DATA_WIDTH", 32U},
                                        {side.word + "_INT_DATA_WIDTH", 32U}};
            std::vector<VariableValues> positions{receivePosition(row.word)};
            if (side.word == "TX") {
                positions = {transmitPosition(row.word, 0), transmitPosition(row.word, 1),
                             transmitPosition(row.word, 2), transmitPosition(row.word, 3)};
            }
            for (const VariableValues& position : positions) {
                append(cases, {{field + "DISTNORTH_SEL", position, row.north},
                               {field + "DISTSOUTH_SEL", position, row.south},
                               {field + "CONSUMPT_SEL", with(position, narrow), row.consumption}});
            }
        }
    }
    return cases;
}

/// At twice the internal width the asynchronous gearbox consumes nothing.
std::vector<FieldCase> gearboxConsumptionCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string field = "PIPE_CTRL_CFG9." + side.word + "SYNCDONE_CONSUMPT_SEL";
        const std::string width = side.word + "_USER_DATA_WIDTH";
        const VariableValues wide{{alignmentMode, 0U},
                                  {"TX_SYNCDONE_POSITION", "above"s},
                                  {"RX_SYNCDONE_POSITION", "above"s},
                                  {side.coding, "64B66B_ASYNC"s},
                                  {width, 64U},
                                  {side.word + "_INT_DATA_WIDTH", 32U}};
        const VariableValues below{{side.word + "_SYNCDONE_POSITION", "below"s}};
        append(cases, {{field, wide, 0},
                       {field, with(wide, below), 0},
                       {field, with(wide, {{width, 128U}}), 1},
                       {field, with(wide, {{side.coding, "64B66B_SYNC"s}}), 1},
                       {field, with(with(wide, below), {{side.coding, "RAW"s}}), 4}});
    }
    return cases;
}

std::vector<FieldCase> distributionInputCases() {
    const std::string field = "PIPE_CTRL_CFG9.TXSYNCDONE_DIST_IN_SEL";
    return {{field, {{alignmentMode, 0U}}, 0},
            {field, {{alignmentMode, 1U}}, 0},
            {field, {{alignmentMode, 2U}}, 0},
            {field, {{alignmentMode, 3U}}, 1}};
}

INSTANTIATE_TEST_SUITE_P(Positions, SxbLaneRule, testing::ValuesIn(ruleCases(positionCases())),
                         caseName);
INSTANTIATE_TEST_SUITE_P(GearboxConsumption, SxbLaneRule,
                         testing::ValuesIn(ruleCases(gearboxConsumptionCases())), caseName);
INSTANTIATE_TEST_SUITE_P(DistributionInput, SxbLaneRule,
                         testing::ValuesIn(ruleCases(distributionInputCases())), caseName);

/// A lane of a quad in which no channel is intermediate, without PCIe and outside of an XPU.
VariableValues rpllLane(unsigned int lane, const std::string& position) {
    VariableValues inputs{{alignmentMode, 0U},
                          {"TX_SYNCDONE_POSITION", position},
                          {"RX_SYNCDONE_POSITION", "elsewhere"s},
                          {"LaneNum", lane},
                          {"PCIE_ENABLE", false},
                          {"XPU_MODE", 0.0F}};
    for (const std::string& side : {"TX"s, "RX"s}) {
        for (unsigned int channel = 0; channel < 4; ++channel) {
            inputs[side + "_CH" + std::to_string(channel) + "_SYNCDONE_POSITION"] = "below"s;
        }
    }
    return inputs;
}

VariableValues intermediate(const std::string& side, unsigned int channel) {
    return {{side + "_CH" + std::to_string(channel) + "_SYNCDONE_POSITION", "IM"s}};
}

VariableValues commonAlignment(const std::string& position) {
    return {{alignmentMode, 3U},
            {"TX_SYNCDONE_POSITION", "elsewhere"s},
            {"RX_SYNCDONE_POSITION", position}};
}

std::vector<FieldCase> rpllEnableCases() {
    const std::string field = "PIPE_CTRL_CFG1.RPLL_EN";
    std::vector<FieldCase> cases{{field, rpllLane(0, "IM"), 1},
                                 {field, rpllLane(3, "single"), 1},
                                 {field, rpllLane(1, "above"), 0},
                                 {field, rpllLane(0, "below"), 0},
                                 // An intermediate channel counts for its own lane only.
                                 {field, with(rpllLane(1, "above"), intermediate("TX", 3)), 0},
                                 {field, with(rpllLane(0, "below"), intermediate("TX", 2)), 0},
                                 {field, with(rpllLane(1, "above"), intermediate("RX", 1)), 0},
                                 // A lane that the quad doesn't have.
                                 {field, rpllLane(4, "above"), 0},
                                 {field, rpllLane(4, "below"), 0},
                                 {field, rpllLane(4, "single"), 1}};
    // Lanes 1 and 3 are enabled for "above", 0 and 2 for "below".
    const std::vector<std::pair<unsigned int, unsigned int>> aboveByLane{
        {0, 0}, {1, 1}, {2, 0}, {3, 1}};
    for (const auto& [lane, above] : aboveByLane) {
        for (const std::string& side : {"TX"s, "RX"s}) {
            const auto ofSide = [&, lane = lane](const std::string& position) {
                const VariableValues own = with(rpllLane(lane, position), intermediate(side, lane));
                return side == "TX" ? own : with(own, commonAlignment(position));
            };
            append(cases, {{field, ofSide("above"), above},
                           {field, ofSide("below"), 1 - above},
                           {field, ofSide("elsewhere"), 0}});
        }
    }
    append(cases,
           {{field, with(rpllLane(0, "below"), commonAlignment("single")), 1},
            {field, with(rpllLane(0, "below"), commonAlignment("IM")), 1},
            {field, with(rpllLane(0, "single"), commonAlignment("below")), 0},
            // An XPU without PCIe has no use for it.
            {field, with(rpllLane(0, "single"), {{"XPU_MODE", 1.0F}}), 0},
            {field, with(rpllLane(0, "single"), {{"XPU_MODE", 0.5F}}), 0},
            {field, with(rpllLane(0, "single"), {{"XPU_MODE", 1.0F}, {"PCIE_ENABLE", true}}), 1},
            {field, with(rpllLane(0, "single"), {{"PCIE_ENABLE", true}}), 1},
            {field, with(rpllLane(0, "below"), {{"PCIE_ENABLE", true}}), 0}});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(RpllEnable, SxbLaneRule, testing::ValuesIn(ruleCases(rpllEnableCases())),
                         caseName);

std::vector<FieldCase> sublayerClockCases() {
    std::vector<FieldCase> cases;
    for (const TestedSide& side : testedSides()) {
        const std::string field = "PIPE_CTRL_CFG0." + side.word + "_PCSCLK_SEL";
        const std::string position = side.word + "_PIPE_POSITION";
        const VariableValues wide{{side.coding, "64B66B_ASYNC"s},
                                  {side.word + "_INT_DATA_WIDTH", 32U},
                                  {side.word + "_USER_DATA_WIDTH", 64U},
                                  {position, "single"s}};
        const VariableValues narrow{{side.word + "_USER_DATA_WIDTH", 32U}};
        append(cases, {{field, wide, 2},
                       {field, with(wide, {{position, "bottom"s}}), 3},
                       {field, with(wide, {{position, "top"s}}), 3},
                       {field, with(wide, {{side.coding, "64B66B_ASYNC_CAUI"s}}), 2},
                       {field, with(wide, narrow), 1},
                       {field, with(with(wide, narrow), {{position, "top"s}}), 1},
                       {field, with(wide, {{side.coding, "64B66B_SYNC"s}}), 0},
                       {field, with(wide, {{side.coding, "RAW"s}}), 0},
                       {field, with(with(wide, narrow), {{side.coding, "RAW"s}}), 0}});
    }
    return cases;
}

std::vector<FieldCase> pipePositionCases() {
    const std::string north = "PIPE_CTRL_CFG6.PIPE_DISTNORTH_SEL";
    const std::string south = "PIPE_CTRL_CFG6.PIPE_DISTSOUTH_SEL";
    const std::string consumption = "PIPE_CTRL_CFG6.PIPE_CONSUMPT_SEL";
    return {{north, {{"TX_PIPE_POSITION", "top"s}}, 0},
            {north, {{"TX_PIPE_POSITION", "middle"s}}, 3},
            {north, {{"TX_PIPE_POSITION", "bottom"s}}, 2},
            {north, {{"TX_PIPE_POSITION", "single"s}}, 2},
            {south, {{"TX_PIPE_POSITION", "top"s}}, 0},
            {south, {{"TX_PIPE_POSITION", "middle"s}}, 1},
            {south, {{"TX_PIPE_POSITION", "bottom"s}}, 0},
            {south, {{"TX_PIPE_POSITION", "single"s}}, 0},
            {consumption, {{"TX_PIPE_POSITION", "top"s}}, 1},
            {consumption, {{"TX_PIPE_POSITION", "middle"s}}, 1},
            {consumption, {{"TX_PIPE_POSITION", "bottom"s}}, 3},
            {consumption, {{"TX_PIPE_POSITION", "single"s}}, 0}};
}

INSTANTIATE_TEST_SUITE_P(SublayerClock, SxbLaneRule,
                         testing::ValuesIn(ruleCases(sublayerClockCases())), caseName);
INSTANTIATE_TEST_SUITE_P(PipePosition, SxbLaneRule,
                         testing::ValuesIn(ruleCases(pipePositionCases())), caseName);

}  // namespace
}  // namespace lanecfg_test
