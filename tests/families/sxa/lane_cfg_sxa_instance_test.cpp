#include "support/reference_data.h"
#include "sxa_expectations.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <boost/optional/optional_io.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::ExpectedField;
using lanecfg_test::expectedSxaAttributes;
using lanecfg_test::expectedSxaFields;
using lanecfg_test::expectedSxaVariables;
using lanecfg_test::referenceFile;
using testing::IsEmpty;
using testing::SizeIs;

constexpr int channels = 4;

std::map<std::string, attributeInfo> referenceRegisters() {
    std::map<std::string, attributeInfo> registers;
    const auto file = referenceFile("SXA", "registers.json");
    for (const auto& [name, row] : file.items()) {
        registers[name] = {row.at("dstSubBlock").get<std::string>(),
                           row.at("fields").get<std::map<std::string, std::vector<int>>>(),
                           row.at("Offset").get<std::string>()};
    }
    return registers;
}

std::map<std::string, paramTypeInfo> referenceParameters() {
    std::map<std::string, paramTypeInfo> parameters;
    const auto file = referenceFile("SXA", "parameters.json");
    for (const auto& [name, row] : file.items()) {
        parameters[name] = {row.at("type").get<std::string>(),
                            row.at("description").get<std::string>(),
                            row.at("default_value").get<std::string>()};
    }
    return parameters;
}

class SxaInstance : public testing::Test {
  protected:
    void make(const userParamStore& params, const std::vector<channelUsageInfo>& usage = {}) {
        instance.reset(lane_cfg_ip_mgr::createLaneCfgInstance("quad", "SXA", usage, {}, parameters,
                                                              params, registers, settings));
        ASSERT_NE(instance, nullptr);
    }

    /// The variables of a pass that rules own, with their values.
    static std::map<std::string, unsigned int> ruleResults(
        const std::map<std::string, varInfo>& snapshot) {
        std::map<std::string, unsigned int> results;
        for (const auto& [name, info] : snapshot) {
            if (info.ruleNumber) {
                results[name] = boost::get<unsigned int>(info.value);
            }
        }
        return results;
    }

    const std::map<std::string, attributeInfo> registers = referenceRegisters();
    const std::map<std::string, paramTypeInfo> parameters = referenceParameters();
    const std::map<std::string, std::vector<std::string>> settings{{"siliconRev", {""}}};
    std::unique_ptr<lane_cfg_instance> instance;
};

TEST_F(SxaInstance, KnowsItsNameAndFamily) {
    make({});
    EXPECT_EQ(instance->instanceName, "quad");
    EXPECT_EQ(instance->familyName, "SXA");
    EXPECT_EQ(instance->family, "SXA");
}

TEST_F(SxaInstance, RegistersEveryRuleInTheOrderOfTheList) {
    make({});
    int number = 0;
    std::string registerName = expectedSxaFields().front().registerName;
    const auto nextRuleIsOf = [&](const std::string& name) {
        ASSERT_EQ(instance->varMap.count(name), 1U) << name;
        EXPECT_EQ(instance->varMap[name].ruleNumber, boost::optional<int>(number)) << name;
        ++number;
    };
    for (const ExpectedField& field : expectedSxaFields()) {
        if (field.registerName != registerName) {
            nextRuleIsOf(registerName);
            registerName = field.registerName;
        }
        nextRuleIsOf(field.registerName + "." + field.field);
    }
    nextRuleIsOf(registerName);
    // 1165 fields and 163 words.
    EXPECT_EQ(number, 1328);
}

TEST_F(SxaInstance, HasNoRuleBeyondTheList) {
    make({});
    EXPECT_THAT(ruleResults(instance->varMap), SizeIs(1328));
}

TEST_F(SxaInstance, EveryFieldAndWordOfEveryChannelHasItsValue) {
    make({});
    ASSERT_THAT(instance->blockVarMap, SizeIs(channels));
    const std::map<std::string, unsigned int> expected = expectedSxaVariables();
    for (const auto& passes : instance->blockVarMap) {
        ASSERT_THAT(passes, SizeIs(1));
        EXPECT_EQ(ruleResults(passes[0]), expected);
    }
}

TEST_F(SxaInstance, WordsWorkedOutByHand) {
    make({});
    std::map<std::string, std::string> answer = instance->getAttributes();
    // 31 in 5 bits, two single bits of 0, then 76.
    EXPECT_EQ(answer["HSCLK1_LCPLL_CFG1"], std::to_string(31 + (76 << 7)));
    // Two single bits of 0, 31 in 5 bits, a single 0, then 1.
    EXPECT_EQ(answer["A_CFG0"], std::to_string((31 << 2) + (1 << 8)));
    EXPECT_EQ(answer["RCALBG1_RCALBG_CFG0"], "0");
    // 29 bits fill the word by themselves.
    EXPECT_EQ(answer["CH2_RX_CRC_CFG1"], "505290270");
    EXPECT_EQ(answer["CH3_TX_PCS_CFG2"], std::to_string(380 + (682 << 9) + (341 << 19)));
}

TEST_F(SxaInstance, AttributesAreTheAttributeMapOfTheBlock) {
    make({});
    EXPECT_EQ(instance->getAttributes(), instance->getAttribMap());
    EXPECT_EQ(instance->getAttributes(), expectedSxaAttributes());
}

TEST_F(SxaInstance, AnswersForEveryUnitOfTheQuad) {
    make({});
    // 132 channel registers four times, 16 of the PLLs twice, one of calibration twice, 14 of the
    // control unit.
    EXPECT_THAT(instance->getAttributes(), SizeIs(4 * 132 + 2 * 16 + 2 + 14));
}

TEST_F(SxaInstance, ReportsNoOutputClocks) {
    make({});
    EXPECT_THAT(instance->getOutClkFrequencies(), IsEmpty());
}

TEST_F(SxaInstance, ThereIsNoFrozenClass) {
    EXPECT_EQ(lane_cfg_ip_mgr::createLaneCfgIterStableInstance("quad", "SXA", {}, {}, parameters,
                                                               {}, registers, settings),
              nullptr);
}

/// Any user parameters: up to three rates for each lane and direction, values at random.
class SxaInstanceWithRandomParameters : public SxaInstance,
                                        public testing::WithParamInterface<unsigned int> {
  protected:
    ruleValue randomValue(const std::string& type) {
        const unsigned int number = std::uniform_int_distribution<unsigned int>()(random);
        const double real = std::uniform_real_distribution<double>(-1e6, 1e6)(random);
        if (type == "int") {
            return number;
        }
        if (type == "bool") {
            return number % 2 == 1;
        }
        if (type == "float") {
            return static_cast<float>(real);
        }
        if (type == "double") {
            return real;
        }
        return std::to_string(number);
    }

    std::vector<std::map<std::string, ruleValue>> randomRates() {
        std::vector<std::map<std::string, ruleValue>> rates(
            std::uniform_int_distribution<std::size_t>(0, 3)(random));
        for (auto& rate : rates) {
            for (const auto& [name, info] : parameters) {
                rate[name] = randomValue(info.type);
            }
        }
        return rates;
    }

    userParamStore randomParameters() {
        userParamStore params(2);
        for (auto& direction : params) {
            for (int channel = 0; channel < channels; ++channel) {
                direction.push_back(randomRates());
            }
        }
        return params;
    }

    std::mt19937 random{GetParam()};
};

TEST_P(SxaInstanceWithRandomParameters, GivesTheSameRuleResults) {
    channelUsageInfo together;
    together.tx = {0, 1};
    together.rx = {0, 1};
    together.txrate = {"A", "A"};
    together.rxrate = {"A", "A"};
    make(randomParameters(), {together});
    const std::map<std::string, unsigned int> expected = expectedSxaVariables();
    for (const auto& passes : instance->blockVarMap) {
        for (const auto& snapshot : passes) {
            EXPECT_EQ(ruleResults(snapshot), expected);
        }
    }
    EXPECT_EQ(instance->getAttributes(), expectedSxaAttributes());
}

INSTANTIATE_TEST_SUITE_P(Seeds, SxaInstanceWithRandomParameters, testing::Range(1U, 9U));

}  // namespace
}  // namespace sable_lanecfg
