#pragma once

#include "support/family_instance.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace lanecfg_test {

/// What holds of quads of the SXB family with the current rules and with the frozen ones alike.
/// `Fixture` is the InstanceTest of one of them.
template <class Fixture>
class PackedQuad : public Fixture {};

TYPED_TEST_SUITE_P(PackedQuad);

TYPED_TEST_P(PackedQuad, KnowsItsNameFamilyAndQuads) {
    this->quads.add("TX_QUAD_CH", "TXQUAD_0", {"a.0", "a.1", "a.2", "a.3"}, {});
    const auto instance = this->made(PackingRequest());
    EXPECT_EQ(instance->instanceName, "quad");
    EXPECT_EQ(instance->ipName, "quad");
    EXPECT_EQ(instance->familyName, "SXB");
    EXPECT_EQ(instance->family, "SXB");
    EXPECT_EQ(instance->quadsUsage, this->quads.quads);
}

TYPED_TEST_P(PackedQuad, KeepsTheOutcomeOfThePacking) {
    const auto instance = this->made(oneLane(tenGigabitEthernet("R3")));
    const auto& numbers = instance->intersectedCoordinates.at("DUAL_0").at("A").at("LCPLL");
    EXPECT_THAT(numbers.at("pllClkFreqs"), testing::ElementsAre(testing::ElementsAre(10.3125)));
    const auto& texts =
        instance->refclkSourceIntersectedCoordinates.at("DUAL_0").at("A").at("LCPLL");
    EXPECT_THAT(texts.at("refclkSources"), testing::ElementsAre(testing::ElementsAre("R3")));
}

TYPED_TEST_P(PackedQuad, TellsTheUserOfAFaultInThePackingAndGoesOn) {
    PackingRequest request = oneLane();
    request.parametersAt(transmit, 0).erase("TX_REFCLK_SOURCE");
    const auto instance = this->made(request);
    EXPECT_THAT(this->messages.texts(0x20000000),
                testing::Contains(testing::MatchesRegex(
                    "Exception caught TX_REFCLK_SOURCE is missing in TX of lane 0 at rate 0 at "
                    "[0-9]+ of file ip/rule_engine/gt_rule_engine/src/gt_quad_packing\\.")));
    EXPECT_THAT(instance->blockVarMap, testing::SizeIs(4));
}

TYPED_TEST_P(PackedQuad, GivesTheRulesThePositionsInTheQuad) {
    this->quads.add("TX_QUAD_CH", "TXQUAD_0", {"a.0", "a.1", "b.0", "undef"}, {"1", "0", "1", "0"});
    PackingRequest request;
    for (int lane = 0; lane < 3; ++lane) {
        request.addBoth(lane, {tenGigabitEthernet()});
    }
    const auto instance = this->made(request);
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "TX_PIPE_POSITION"), "bottom");
    EXPECT_EQ(valueIn<std::string>(*instance, 1, "TX_PIPE_POSITION"), "top");
    EXPECT_EQ(valueIn<std::string>(*instance, 1, "TX_CH0_SYNCDONE_POSITION"), "IM");
    EXPECT_EQ(valueIn<std::string>(*instance, 2, "TX_PIPE_POSITION"), "single");
}

TYPED_TEST_P(PackedQuad, WithoutQuadsLeavesThePositionsAtTheirDefaults) {
    const auto instance = this->made(oneLane());
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "TX_PIPE_POSITION"), "single");
    EXPECT_EQ(valueIn<std::string>(*instance, 0, "RX_CH3_RESETDONE_POSITION"), "single");
}

TYPED_TEST_P(PackedQuad, PassesOnTheExceptionOfARule) {
    PackingRequest request = oneLane();
    request.parametersAt(transmit, 0)["TX_LINE_RATE"] = 10U;
    EXPECT_THROW(this->made(request), boost::bad_get);
}

REGISTER_TYPED_TEST_SUITE_P(PackedQuad, KnowsItsNameFamilyAndQuads, KeepsTheOutcomeOfThePacking,
                            TellsTheUserOfAFaultInThePackingAndGoesOn,
                            GivesTheRulesThePositionsInTheQuad,
                            WithoutQuadsLeavesThePositionsAtTheirDefaults,
                            PassesOnTheExceptionOfARule);

}  // namespace lanecfg_test
