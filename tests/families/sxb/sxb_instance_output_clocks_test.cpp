#include "families/sxb/sxb_output_clocks.h"
#include "sxb_instance_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::PackingRequest;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using namespace std::string_literals;

/// Clocks of a pass in both directions (MHz).
variableMap passOf(double transmit, double receive) {
    return {{"INT_TXOUTCLK_FREQ", {boost::none, transmit}},
            {"INT_TXOUTCLK_REFCLK_FREQ", {boost::none, transmit / 2.0}},
            {"INT_TXOUTCLK_REFCLK_SOURCE", {boost::none, "LCPLLGTREFCLK0"s}},
            {"INT_RXOUTCLK_FREQ", {boost::none, receive}},
            {"INT_RXOUTCLK_REFCLK_FREQ", {boost::none, receive / 4.0}},
            {"INT_RXOUTCLK_REFCLK_SOURCE", {boost::none, "RPLLGTREFCLK1"s}}};
}

class SxbOutputClocks : public lanecfg_test::ServiceEngine {
  protected:
    SxbOutputClocks() { make(PackingRequest()); }

    /// The passes of lane 0; the other lanes ran without an output clock.
    void ran(const std::vector<variableMap>& passes) {
        const std::vector<variableMap> idle{passOf(0.0, 0.0)};
        engine->blockVarMap = {passes, idle, idle, idle};
    }
};

TEST_F(SxbOutputClocks, AreOfTheFastestRate) {
    ran({passOf(100.0, 250.0), passOf(300.0, 200.0), passOf(200.0, 100.0)});
    EXPECT_THAT(outputClocks(*engine),
                ElementsAre(Pair("CH0_RXOUTCLK", "250"), Pair("CH0_TXOUTCLK", "300")));
}

TEST_F(SxbOutputClocks, HaveSixSignificantDigits) {
    ran({passOf(322.265625, 161.1328125)});
    EXPECT_THAT(outputClocks(*engine),
                ElementsAre(Pair("CH0_RXOUTCLK", "161.133"), Pair("CH0_TXOUTCLK", "322.266")));
}

TEST_F(SxbOutputClocks, LeaveOutALaneWithoutAClockAboveZero) {
    ran({passOf(0.0, -5.0), passOf(-1.0, 0.0)});
    EXPECT_THAT(outputClocks(*engine), IsEmpty());
    EXPECT_THAT(outputClocksWithReferences(*engine), IsEmpty());
}

TEST_F(SxbOutputClocks, LeaveOutAClockThatIsNoNumber) {
    ran({passOf(std::numeric_limits<double>::quiet_NaN(), 100.0)});
    EXPECT_THAT(outputClocks(*engine), ElementsAre(Pair("CH0_RXOUTCLK", "100")));
}

TEST_F(SxbOutputClocks, LeaveOutALaneWhoseRulesGiveNone) {
    ran({variableMap(), {{"INT_TXOUTCLK_FREQ", {boost::none, "100"s}}}});
    EXPECT_THAT(outputClocks(*engine), IsEmpty());
}

TEST_F(SxbOutputClocks, AreEmptyWithoutUserParameters) {
    ran({passOf(100.0, 100.0)});
    for (const userParamStore& store : {userParamStore(), userParamStore(2)}) {
        engine->userParams = store;
        EXPECT_THAT(outputClocks(*engine), IsEmpty());
        EXPECT_THAT(outputClocksWithReferences(*engine), IsEmpty());
    }
}

TEST_F(SxbOutputClocks, AreOfTheLanesThatTheRequestListsInEitherDirection) {
    const std::vector<variableMap> passes{passOf(100.0, 100.0)};
    engine->blockVarMap = {passes, passes, passes, passes};
    engine->userParams = userParamStore(2);
    engine->userParams[1].resize(2);
    EXPECT_THAT(outputClocks(*engine),
                ElementsAre(Pair("CH0_RXOUTCLK", "100"), Pair("CH0_TXOUTCLK", "100"),
                            Pair("CH1_RXOUTCLK", "100"), Pair("CH1_TXOUTCLK", "100")));
}

TEST_F(SxbOutputClocks, AreOfTheLanesThatHaveRun) {
    engine->userParams = userParamStore(2);
    engine->userParams[0].resize(9);
    ran({passOf(100.0, 100.0)});
    EXPECT_THAT(outputClocks(*engine), SizeIs(2));
}

TEST_F(SxbOutputClocks, WithReferencesTellWhereTheyComeFrom) {
    ran({passOf(100.0, 200.0)});
    EXPECT_THAT(outputClocksWithReferences(*engine),
                ElementsAre(Pair("CH0_RXOUTCLK_FREQ", "200"), Pair("CH0_RXOUTCLK_REF_FREQ", "50"),
                            Pair("CH0_RXOUTCLK_REF_SOURCE", "HSCLK0_RPLLGTREFCLK1"),
                            Pair("CH0_TXOUTCLK_FREQ", "100"), Pair("CH0_TXOUTCLK_REF_FREQ", "50"),
                            Pair("CH0_TXOUTCLK_REF_SOURCE", "HSCLK0_LCPLLGTREFCLK0")));
}

TEST_F(SxbOutputClocks, OfSeveralEqualRatesHaveTheReferencesOfTheFirst) {
    variableMap second = passOf(100.0, 0.0);
    second["INT_TXOUTCLK_REFCLK_SOURCE"].value = "LCPLLGTREFCLK1"s;
    ran({passOf(100.0, 0.0), second});
    EXPECT_THAT(outputClocksWithReferences(*engine),
                testing::Contains(Pair("CH0_TXOUTCLK_REF_SOURCE", "HSCLK0_LCPLLGTREFCLK0")));
}

TEST_F(SxbOutputClocks, WithReferencesNameTheDualOfTheLane) {
    const std::vector<variableMap> passes{passOf(100.0, 0.0)};
    engine->blockVarMap = {passes, passes, passes, passes};
    const auto clocks = outputClocksWithReferences(*engine);
    EXPECT_EQ(clocks.at("CH1_TXOUTCLK_REF_SOURCE"), "HSCLK0_LCPLLGTREFCLK0");
    EXPECT_EQ(clocks.at("CH2_TXOUTCLK_REF_SOURCE"), "HSCLK1_LCPLLGTREFCLK0");
    EXPECT_EQ(clocks.at("CH3_TXOUTCLK_REF_SOURCE"), "HSCLK1_LCPLLGTREFCLK0");
}

}  // namespace
}  // namespace sable_lanecfg
