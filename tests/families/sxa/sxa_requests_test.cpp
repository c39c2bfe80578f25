#include "support/captured_messages.h"
#include "support/reference_data.h"
#include "sxa_expectations.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::bundledRequest;
using lanecfg_test::bundledRequests;
using lanecfg_test::CapturedMessages;
using lanecfg_test::expectedSxaAttributes;
using lanecfg_test::expectedSxaVariables;
using lanecfg_test::initialiseBundledRequest;
using testing::ElementsAre;
using testing::IsEmpty;

const char* const instanceName = "quad_0";

/// Hands a bundled request to the manager and releases the instance at the end.
class SxaRequest : public testing::Test {
  protected:
    ~SxaRequest() override { lane_cfg_ip_mgr::releaseData(instanceName); }

    static lane_cfg_instance* initialise(const std::string& request) {
        initialiseBundledRequest(instanceName, request);
        return lane_cfg_ip_mgr::getIPInstance(instanceName);
    }

    /// (TX, RX) of each pass of a channel.
    static std::vector<std::pair<unsigned int, unsigned int>> passesOf(
        const lane_cfg_instance& instance, std::size_t channel) {
        std::vector<std::pair<unsigned int, unsigned int>> passes;
        for (const auto& snapshot : instance.blockVarMap.at(channel)) {
            passes.emplace_back(boost::get<unsigned int>(snapshot.at("TX").value),
                                boost::get<unsigned int>(snapshot.at("RX").value));
        }
        return passes;
    }

    static std::vector<std::size_t> passCounts(const lane_cfg_instance& instance) {
        std::vector<std::size_t> counts;
        for (const auto& passes : instance.blockVarMap) {
            counts.push_back(passes.size());
        }
        return counts;
    }

    CapturedMessages messages;
};

class SxaRequestAnswers : public SxaRequest, public testing::WithParamInterface<std::string> {};

TEST_P(SxaRequestAnswers, WithoutAnErrorMessage) {
    ASSERT_NE(initialise(GetParam()), nullptr);
    EXPECT_THAT(messages.texts(0x20000000), IsEmpty());
    EXPECT_THAT(messages.texts(0x10000000), IsEmpty());
    EXPECT_THAT(messages.texts(0x8000000), IsEmpty());
}

TEST_P(SxaRequestAnswers, WithTheGoldenAttributes) {
    ASSERT_NE(initialise(GetParam()), nullptr);
    EXPECT_EQ(lane_cfg_ip_mgr::getAttributes(instanceName, "SXA", "live"), expectedSxaAttributes());
}

TEST_P(SxaRequestAnswers, WithEveryFieldOfEveryPassOfEveryChannel) {
    const lane_cfg_instance* const instance = initialise(GetParam());
    ASSERT_NE(instance, nullptr);
    for (const auto& passes : instance->blockVarMap) {
        ASSERT_FALSE(passes.empty());
        for (const auto& snapshot : passes) {
            for (const auto& [name, value] : expectedSxaVariables()) {
                ASSERT_EQ(snapshot.count(name), 1U) << name;
                EXPECT_EQ(boost::get<unsigned int>(snapshot.at(name).value), value) << name;
            }
        }
    }
}

TEST_P(SxaRequestAnswers, WithoutOutputClocks) {
    ASSERT_NE(initialise(GetParam()), nullptr);
    EXPECT_THAT(lane_cfg_ip_mgr::getOutClkFrequencies(instanceName, "SXA", "live"), IsEmpty());
}

std::vector<std::string> sxaRequests() {
    std::vector<std::string> names;
    for (const std::string& name : bundledRequests()) {
        if (bundledRequest(name).at("family") == "SXA") {
            names.push_back(name);
        }
    }
    return names;
}

INSTANTIATE_TEST_SUITE_P(Requests, SxaRequestAnswers, testing::ValuesIn(sxaRequests()),
                         [](const auto& row) { return row.param; });

TEST_F(SxaRequest, ThereAreTheFourForms) {
    EXPECT_THAT(sxaRequests(),
                ElementsAre("sxa_basic", "sxa_dictionary", "sxa_multi_rate", "sxa_receive_only"));
}

TEST_F(SxaRequest, BasicRunsOnePassForEachLane) {
    const lane_cfg_instance* const instance = initialise("sxa_basic");
    ASSERT_NE(instance, nullptr);
    EXPECT_THAT(passCounts(*instance), ElementsAre(1, 1, 1, 1));
    for (const auto& passes : instance->blockVarMap) {
        EXPECT_EQ(boost::get<double>(passes[0].at("TX_LINE_RATE").value), 10.3125);
        EXPECT_EQ(boost::get<std::string>(passes[0].at("LaneTxRxMode").value),
                  "txrx_rate_together");
    }
}

TEST_F(SxaRequest, MultiRateRunsRatesTogetherOnOnePairAndApartOnTheOther) {
    const lane_cfg_instance* const instance = initialise("sxa_multi_rate");
    ASSERT_NE(instance, nullptr);
    using pass = std::pair<unsigned int, unsigned int>;
    for (const std::size_t channel : {0U, 1U}) {
        EXPECT_THAT(passesOf(*instance, channel), ElementsAre(pass(0, 0), pass(1, 1)));
    }
    for (const std::size_t channel : {2U, 3U}) {
        EXPECT_THAT(passesOf(*instance, channel), ElementsAre(pass(0, 0), pass(0, 1), pass(0, 2),
                                                              pass(1, 0), pass(1, 1), pass(1, 2)));
    }
    const auto& lastPass = instance->blockVarMap[3][5];
    EXPECT_EQ(boost::get<double>(lastPass.at("TX_LINE_RATE").value), 5.0);
    EXPECT_EQ(boost::get<double>(lastPass.at("RX_LINE_RATE").value), 10.0);
    EXPECT_EQ(boost::get<std::string>(lastPass.at("RX_DATA_DECODING").value), "64B66B_SYNC");
    EXPECT_EQ(boost::get<std::string>(lastPass.at("LaneTxRxMode").value), "txrx_rate_seperate");
}

TEST_F(SxaRequest, ReceiveOnlyRunsDefaultsWhereNoRateIsGiven) {
    const lane_cfg_instance* const instance = initialise("sxa_receive_only");
    ASSERT_NE(instance, nullptr);
    EXPECT_THAT(passCounts(*instance), ElementsAre(1, 1, 1, 1));
    const auto& used = instance->blockVarMap[1][0];
    EXPECT_EQ(boost::get<double>(used.at("RX_LINE_RATE").value), 2.97);
    EXPECT_EQ(boost::get<double>(used.at("TX_LINE_RATE").value), 10.3125);
    const auto& unused = instance->blockVarMap[2][0];
    EXPECT_EQ(boost::get<double>(unused.at("RX_LINE_RATE").value), 10.3125);
    EXPECT_EQ(boost::get<unsigned int>(unused.at("RX_INT_DATA_WIDTH").value), 32U);
}

TEST_F(SxaRequest, DictionaryFormReadsItsLanesAndTheRevisionOfItsPart) {
    const lane_cfg_instance* const instance = initialise("sxa_dictionary");
    ASSERT_NE(instance, nullptr);
    EXPECT_THAT(passCounts(*instance), ElementsAre(1, 1, 1, 1));
    const auto& used = instance->blockVarMap[1][0];
    EXPECT_EQ(boost::get<std::string>(used.at("TX_DATA_ENCODING").value), "8B10B");
    EXPECT_EQ(boost::get<unsigned int>(used.at("RX_INT_DATA_WIDTH").value), 40U);
    EXPECT_EQ(boost::get<std::string>(used.at("siliconRev").value), "r1");
    const auto& unused = instance->blockVarMap[3][0];
    EXPECT_EQ(boost::get<std::string>(unused.at("TX_DATA_ENCODING").value), "RAW");
}

}  // namespace
}  // namespace sable_lanecfg
