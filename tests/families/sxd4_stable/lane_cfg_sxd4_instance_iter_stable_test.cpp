#include "support/family_instance.h"

#include <lanecfg/family_rules.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::oneLane;
using lanecfg_test::PackingRequest;
using lanecfg_test::rateOf;
using lanecfg_test::valueIn;
using testing::IsEmpty;
using testing::SizeIs;

class Sxd4StableInstance : public lanecfg_test::InstanceTest<lane_cfg_instance_iter_stable> {
  protected:
    Sxd4StableInstance() : InstanceTest("SXD4") {}
};

TEST_F(Sxd4StableInstance, IsWhatTheManagerMakesOfTheFamilyWord) {
    const auto instance = made(PackingRequest(), "dual");
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->instanceName, "dual");
    EXPECT_EQ(instance->familyName, "SXD4");
    EXPECT_EQ(instance->family, "SXD4");
}

TEST_F(Sxd4StableInstance, HasNoRules) {
    const auto instance = made(PackingRequest());
    for (const auto& [name, info] : instance->varMap) {
        EXPECT_FALSE(info.ruleNumber) << name;
    }
    EXPECT_THAT(rulesOfFamily("SXD4", "stable"), IsEmpty());
}

TEST_F(Sxd4StableInstance, RunsAPassForEachRateWithTheParametersAlone) {
    PackingRequest request;
    request.addBoth(0, {rateOf(25.78125), rateOf(53.125)});
    const auto instance = made(request);
    ASSERT_THAT(instance->blockVarMap, SizeIs(2));
    ASSERT_THAT(instance->blockVarMap[0], SizeIs(2));
    EXPECT_THAT(instance->blockVarMap[1], SizeIs(1));
    EXPECT_EQ(valueIn<double>(*instance, 0, "TX_LINE_RATE", 1), 53.125);
    EXPECT_EQ(valueIn<unsigned>(*instance, 1, "LaneNum"), 1U);
}

TEST_F(Sxd4StableInstance, DoesNotPack) {
    const auto instance = made(oneLane(rateOf(25.78125)));
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    EXPECT_THAT(instance->intersectedCoordinates, IsEmpty());
}

TEST_F(Sxd4StableInstance, AnswersNoWordAndNoOutputClock) {
    const auto instance = made(PackingRequest());
    EXPECT_THAT(instance->getAttributes(), IsEmpty());
    EXPECT_THAT(instance->getOutClkFrequencies(), IsEmpty());
}

TEST_F(Sxd4StableInstance, AnswersTheAttributeMapAsItStands) {
    const auto instance = made(PackingRequest());
    const std::string name = database.m_fields.begin()->first;
    for (auto& passes : instance->blockVarMap) {
        passes.front()[name].value = 7U;
    }
    EXPECT_EQ(instance->getAttributes(), instance->getAttribMap());
    EXPECT_THAT(instance->getAttributes(), testing::Not(IsEmpty()));
}

TEST_F(Sxd4StableInstance, HoldsTheFrozenImage) {
    const auto image = made(PackingRequest())->getMemContent();
    EXPECT_THAT(image, SizeIs(6));
    EXPECT_EQ(image.count("@0001038c"), 1U);
}

}  // namespace
}  // namespace sable_lanecfg
