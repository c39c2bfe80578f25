#include "sxb_rule_alone.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace std::string_literals;

struct Element {
    std::string field;
    std::string value;
    std::string control;
    std::string disparity;
    std::string count;
    /// The number of sequences from which on the element is in use.
    unsigned int leastCount;
};

const std::vector<Element>& elements() {
    static const std::vector<Element> all{
        {"RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_SEQ_1_1", "RX_CC_VAL_0_0", "RX_CC_K_0_0",
         "RX_CC_DISP_0_0", "RX_CC_NUM_SEQ", 1},
        {"RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_SEQ_1_2", "RX_CC_VAL_0_1", "RX_CC_K_0_1",
         "RX_CC_DISP_0_1", "RX_CC_NUM_SEQ", 1},
        {"RX_ELASTIC_BUF_CFG1.EB8B10B_CLK_COR_SEQ_1_3", "RX_CC_VAL_0_2", "RX_CC_K_0_2",
         "RX_CC_DISP_0_2", "RX_CC_NUM_SEQ", 1},
        {"RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_1_4", "RX_CC_VAL_0_3", "RX_CC_K_0_3",
         "RX_CC_DISP_0_3", "RX_CC_NUM_SEQ", 1},
        {"RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_2_1", "RX_CC_VAL_1_0", "RX_CC_K_1_0",
         "RX_CC_DISP_1_0", "RX_CC_NUM_SEQ", 2},
        {"RX_ELASTIC_BUF_CFG2.EB8B10B_CLK_COR_SEQ_2_2", "RX_CC_VAL_1_1", "RX_CC_K_1_1",
         "RX_CC_DISP_1_1", "RX_CC_NUM_SEQ", 2},
        {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_3", "RX_CC_VAL_1_2", "RX_CC_K_1_2",
         "RX_CC_DISP_1_2", "RX_CC_NUM_SEQ", 2},
        {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_4", "RX_CC_VAL_1_3", "RX_CC_K_1_3",
         "RX_CC_DISP_1_3", "RX_CC_NUM_SEQ", 2},
        {"RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_1_1", "RX_CB_VAL_0_0", "RX_CB_K_0_0",
         "RX_CB_DISP_0_0", "RX_CB_NUM_SEQ", 1},
        {"RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_1_2", "RX_CB_VAL_0_1", "RX_CB_K_0_1",
         "RX_CB_DISP_0_1", "RX_CB_NUM_SEQ", 1},
        {"RX_ELASTIC_BUF_CFG4.EB8B10B_CHAN_BOND_SEQ_1_3", "RX_CB_VAL_0_2", "RX_CB_K_0_2",
         "RX_CB_DISP_0_2", "RX_CB_NUM_SEQ", 1},
        {"RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_1_4", "RX_CB_VAL_0_3", "RX_CB_K_0_3",
         "RX_CB_DISP_0_3", "RX_CB_NUM_SEQ", 1},
        // The disparities of the second bonding sequence are those of clock correction.
        {"RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_2_1", "RX_CB_VAL_1_0", "RX_CB_K_1_0",
         "RX_CC_DISP_1_0", "RX_CB_NUM_SEQ", 2},
        {"RX_ELASTIC_BUF_CFG5.EB8B10B_CHAN_BOND_SEQ_2_2", "RX_CB_VAL_1_1", "RX_CB_K_1_1",
         "RX_CC_DISP_1_1", "RX_CB_NUM_SEQ", 2},
        {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_2_3", "RX_CB_VAL_1_2", "RX_CB_K_1_2",
         "RX_CC_DISP_1_2", "RX_CB_NUM_SEQ", 2},
        {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_2_4", "RX_CB_VAL_1_3", "RX_CB_K_1_3",
         "RX_CC_DISP_1_3", "RX_CB_NUM_SEQ", 2}};
    return all;
}

/// The element in use with the value 10111100, 188.
VariableValues inUse(const Element& element, bool disparity, bool control,
                     const std::string& coding) {
    return {{element.value, "10111100"s},   {element.control, control},
            {element.disparity, disparity}, {element.count, element.leastCount},
            {"RX_DATA_DECODING", coding},   {"RX_INT_DATA_WIDTH", 20U}};
}

std::vector<RuleCase> elementCases(const Element& element) {
    const auto given = [&](const VariableValues& inputs, unsigned int value) {
        return fieldCase(element.field, inputs, value);
    };
    const VariableValues comma = inUse(element, false, true, "8B10B");
    const VariableValues raw = inUse(element, true, true, "RAW");
    return {
        // 512 of the disparity, 256 of the control bit.
        given(inUse(element, false, false, "8B10B"), 188),
        given(comma, 444),
        given(inUse(element, true, false, "8B10B"), 700),
        given(inUse(element, true, true, "8B10B"), 956),
        given(with(comma, {{"RX_INT_DATA_WIDTH", 64U}}), 444),
        given(with(comma, {{element.count, element.leastCount - 1}}), 0),
        given(with(comma, {{element.count, 0U}}), 0),
        given(with(comma, {{element.count, 3U}}), 444),
        // Other codings have neither bit, and elements at two widths only.
        given(with(raw, {{"RX_INT_DATA_WIDTH", 16U}}), 188),
        given(with(raw, {{"RX_INT_DATA_WIDTH", 32U}}), 188),
        given(with(raw, {{"RX_INT_DATA_WIDTH", 20U}}), 0),
        given(with(raw, {{"RX_INT_DATA_WIDTH", 64U}}), 0),
        given(with(raw, {{"RX_INT_DATA_WIDTH", 32U}, {element.count, 0U}}), 0),
        // The value is not checked: its leading digits count.
        given(with(comma, {{element.value, "11x1"s}}), 7),
        given(with(comma, {{element.value, ""s}}), 1),
        given(with(comma, {{element.value, std::string(40, '1')}}), 0),
    };
}

std::vector<RuleCase> allElementCases() {
    std::vector<RuleCase> cases;
    for (const Element& element : elements()) {
        append(cases, elementCases(element));
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfSequenceElements, SxbLaneRule, testing::ValuesIn(allElementCases()),
                         caseName);

class SxbRxSecondBond : public testing::TestWithParam<int> {};

TEST_P(SxbRxSecondBond, ReadsTheDisparityOfTheSecondCorrection) {
    const Element& element = elements().at(static_cast<std::size_t>(11 + GetParam()));
    const std::string ownDisparity = "RX_CB_DISP_1_" + std::to_string(GetParam() - 1);
    RuleAlone rule(element.field, inUse(element, true, false, "8B10B"));
    rule.set({{ownDisparity, false}});
    rule.runPass();
    EXPECT_EQ(rule.value(element.field), ruleValue(700U));
    rule.set({{element.disparity, false}, {ownDisparity, true}});
    rule.runPass();
    EXPECT_EQ(rule.value(element.field), ruleValue(188U));
}

INSTANTIATE_TEST_SUITE_P(Element, SxbRxSecondBond, testing::Range(1, 5));

struct Enables {
    std::string field;
    std::string masks;
};

std::vector<RuleCase> enableCases() {
    const std::vector<Enables> fields{
        {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_1_EN", "RX_CC_MASK_0_"},
        {"RX_ELASTIC_BUF_CFG3.EB8B10B_CLK_COR_SEQ_2_EN", "RX_CC_MASK_1_"},
        {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_1_EN", "RX_CB_MASK_0_"},
        {"RX_ELASTIC_BUF_CFG6.EB8B10B_CHAN_BOND_SEQ_2_EN", "RX_CB_MASK_1_"}};
    std::vector<RuleCase> cases;
    for (const Enables& row : fields) {
        const auto masked = [&row](bool first, bool second, bool third, bool fourth,
                                   unsigned int enables) {
            return fieldCase(row.field,
                             {{row.masks + "0", first},
                              {row.masks + "1", second},
                              {row.masks + "2", third},
                              {row.masks + "3", fourth}},
                             enables);
        };
        append(cases,
               {masked(false, false, false, false, 15), masked(true, false, false, false, 14),
                masked(false, true, false, false, 13), masked(false, false, true, false, 11),
                masked(false, false, false, true, 7), masked(true, true, true, true, 0)});
    }
    return cases;
}

INSTANTIATE_TEST_SUITE_P(OfSequenceEnables, SxbLaneRule, testing::ValuesIn(enableCases()),
                         caseName);

}  // namespace
}  // namespace lanecfg_test
