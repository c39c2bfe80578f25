#include "support/packing_request.h"
#include "support/reference_data.h"

#include <lanecfg/family_rules.h>
#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::PackingRequest;
using lanecfg_test::rateOf;
using testing::IsEmpty;
using testing::SizeIs;

class Sxd4StableInstance : public testing::Test {
  protected:
    std::unique_ptr<lane_cfg_instance_iter_stable> made(const PackingRequest& request) const {
        return std::unique_ptr<lane_cfg_instance_iter_stable>(
            lane_cfg_ip_mgr::createLaneCfgIterStableInstance(
                "dual", "SXD4", request.channels, {}, database.m_paramTypes, request.userParams,
                database.m_fields, database.m_deviceData));
    }

    const gt_db_load database = lanecfg_test::referenceDatabase("SXD4");
};

TEST_F(Sxd4StableInstance, IsWhatTheManagerMakesOfTheFamilyWord) {
    const auto instance = made(PackingRequest());
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
    EXPECT_EQ(boost::get<double>(instance->blockVarMap[0][1].at("TX_LINE_RATE").value), 53.125);
    EXPECT_EQ(boost::get<unsigned int>(instance->blockVarMap[1][0].at("LaneNum").value), 1U);
}

TEST_F(Sxd4StableInstance, DoesNotPack) {
    PackingRequest request;
    request.addBoth(0, {rateOf(25.78125)});
    const auto instance = made(request);
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
