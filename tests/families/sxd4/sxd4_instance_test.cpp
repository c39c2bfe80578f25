#include "support/family_instance.h"
#include "support/reference_data.h"
#include "sxd4_passes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::BlockRates;
using lanecfg_test::numberOfRule;
using lanecfg_test::referenceDatabase;
using lanecfg_test::sxd4Instance;
using lanecfg_test::VariableValues;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Key;
using testing::Not;
using testing::SizeIs;

VariableValues correction(unsigned transmit, unsigned receive) {
    return {{"TX_FEC_MODE", transmit}, {"RX_FEC_MODE", receive}};
}

/// The words of the error correction in the attributes of a block: modes of receiver 0 and 1 and
/// transmitter 0 and 1 in four bits each, and their bypasses in a bit each.
struct CorrectionWords {
    std::string modes;
    std::string bypasses;

    bool operator==(const CorrectionWords& other) const {
        return modes == other.modes && bypasses == other.bypasses;
    }
};

void PrintTo(const CorrectionWords& words, std::ostream* output) {
    *output << words.modes << " and " << words.bypasses;
}

CorrectionWords wordsOf(lane_cfg_sxd4_instance& instance) {
    const auto attributes = instance.getAttributes();
    return {attributes.at("FEC_CFG0"), attributes.at("FEC_CFG3")};
}

CorrectionWords words(unsigned modes, unsigned bypasses) {
    return {std::to_string(modes), std::to_string(bypasses)};
}

TEST(Sxd4Instance, RunsTwoChannels) {
    const auto instance = sxd4Instance({});
    EXPECT_THAT(instance->blockVarMap, ElementsAre(SizeIs(1), SizeIs(1)));
}

TEST(Sxd4Instance, KnowsItsNames) {
    const auto instance = sxd4Instance({});
    EXPECT_EQ(instance->ipName, "block_0");
    EXPECT_EQ(instance->instanceName, "block_0");
    EXPECT_EQ(instance->familyName, "SXD4");
    EXPECT_EQ(instance->family, "SXD4");
}

TEST(Sxd4Instance, NumbersReceiveTransmitAndPllRules) {
    const auto instance = sxd4Instance({});
    EXPECT_EQ(numberOfRule(*instance, "RX_APT_CFG21B.NRZFORM"), 0);
    EXPECT_EQ(numberOfRule(*instance, "RX_PCS_CFG1"), 567);
    EXPECT_EQ(numberOfRule(*instance, "TX_ANA_CFG1.CTL_PAM2_HIBT"), 568);
    EXPECT_EQ(numberOfRule(*instance, "TX_PCS_CFG1"), 675);
    EXPECT_EQ(numberOfRule(*instance, "INT_TX_BAUD_RATE"), 676);
    EXPECT_EQ(numberOfRule(*instance, "RXPMARESETMASK"), 1046);
}

TEST(Sxd4Instance, IsNotPacked) {
    const auto instance = sxd4Instance({{{}}, {{}}});
    EXPECT_THAT(instance->packedChannels, IsEmpty());
    EXPECT_THAT(instance->intersectedCoordinates, IsEmpty());
}

TEST(Sxd4Instance, ReportsNoOutputClocks) {
    EXPECT_THAT(sxd4Instance({})->getOutClkFrequencies(), IsEmpty());
}

TEST(Sxd4Instance, NeedsNoFabricMemoryForOneRate) {
    EXPECT_FALSE(sxd4Instance({})->isFabricBramNeeded());
}

TEST(Sxd4Instance, HasTheLiveFirmwareAndATable) {
    const auto content = sxd4Instance({})->getMemContent();
    EXPECT_THAT(content, Contains(Key("@00016000")));
    EXPECT_GT(content.size(), 1U);
}

TEST(Sxd4Instance, FailsByAnExceptionWithoutItsLimits) {
    EXPECT_THROW(sxd4Instance({}, {{"siliconRev", {""}}}), std::invalid_argument);
}

TEST(Sxd4Attributes, NameChannelsClockGroupAndControlUnit) {
    const auto attributes = sxd4Instance({})->getAttributes();
    for (const char* const name : {"CH0_A_CH_CFG4", "CH1_A_CH_CFG4", "HSCLK0_PLL_CFG0", "RST_CFG",
                                   "CH0_TXOUTCLKSEL", "CH1_RXPCSRESETMASK", "FEC_CFG27"}) {
        EXPECT_THAT(attributes, Contains(Key(name)));
    }
    EXPECT_THAT(attributes, Not(Contains(Key("CH2_A_CH_CFG4"))));
    // The lists have 93 receive, 16 transmit and 78 PLL registers. Of the latter 18 are in the
    // clock block and 39 in the control unit; all else is there for each channel, and 6 ports.
    EXPECT_THAT(attributes, SizeIs(2 * (93 + 16 + 78 - 18 - 39 + 6) + 18 + 39));
}

TEST(Sxd4Attributes, HoldTheModesOfBothChannels) {
    const auto instance = sxd4Instance({{correction(1, 2)}, {correction(3, 4)}});
    // Receivers 2 and 4, transmitters 1 and 3; nothing is bypassed.
    EXPECT_EQ(wordsOf(*instance), words(0x3142, 0));
}

TEST(Sxd4Attributes, PutTheTransmitBypassOfTheFirstChannelIntoTheFieldOfTheSecond) {
    const auto instance = sxd4Instance({{correction(0, 1)}, {correction(1, 0)}});
    // Receiver 1 is bypassed, bit 1. Transmitter 0 is, and that stands in bit 3 for transmitter 1;
    // bit 2 is what the last pass, that of channel 1, wrote: its own 0.
    EXPECT_EQ(wordsOf(*instance), words(0x1001, 0b1010));
}

TEST(Sxd4Attributes, KeepTheTransmitBypassOfTheLastPassForTheFirstChannel) {
    const auto instance = sxd4Instance({{correction(1, 1)}, {correction(0, 1)}});
    EXPECT_EQ(wordsOf(*instance), words(0x0111, 0b0100));
}

TEST(Sxd4Attributes, KeepTheTransmitBypassOfTheLastPassOfAnotherRate) {
    const auto instance =
        sxd4Instance({{correction(1, 1), correction(1, 1)}, {correction(1, 1), correction(0, 0)}});
    EXPECT_EQ(wordsOf(*instance), words(0x1111, 0b0100));
}

TEST(Sxd4Attributes, AreThoseOfTheFirstRates) {
    const auto instance =
        sxd4Instance({{correction(1, 2), correction(5, 6)}, {correction(3, 4), correction(7, 8)}});
    EXPECT_EQ(wordsOf(*instance), words(0x3142, 0));
}

TEST(Sxd4Attributes, CountAChannelWithoutRatesAsOneOfDefaults) {
    const auto instance = sxd4Instance({{}, {correction(1, 1)}});
    // Bypassed are receiver 0 and transmitter 0, which stands in bit 3.
    EXPECT_EQ(wordsOf(*instance), words(0x1010, 0b1001));
}

TEST(Sxd4Attributes, LeaveTheWordsAsVariables) {
    const auto instance = sxd4Instance({{correction(1, 2)}, {correction(0, 4)}});
    instance->getAttributes();
    EXPECT_EQ(instance->getVal<unsigned>("FEC_CFG0"), 0x0142U);
    EXPECT_EQ(instance->getVal<unsigned>("FEC_CFG0.CTL_TX0_MODE"), 1U);
    EXPECT_EQ(instance->getVal<unsigned>("FEC_CFG3.FEC_TX1_BYPASS"), 0U);
    EXPECT_EQ(instance->getVal<unsigned>("FEC_CFG3.FEC_TX0_BYPASS"), 1U);
    EXPECT_EQ(instance->getVal<unsigned>("FEC_CFG3"), 0b0100U);
}

TEST(Sxd4Attributes, HoldTheLowFourBitsOfAModeThatDoesNotFit) {
    const auto instance = sxd4Instance({{correction(18, 16)}, {}});
    // Only transmitter 0 has bits left. Nothing of channel 0 is bypassed; receiver 1 is, and bit 2
    // is what channel 1 left for transmitter 0.
    EXPECT_EQ(wordsOf(*instance), words(0x0200, 0b0110));
}

TEST(Sxd4Attributes, GoByTheWholeModeBesideItsField) {
    const auto instance = sxd4Instance({{correction(16, 16)}, {correction(16, 16)}});
    EXPECT_EQ(wordsOf(*instance), words(0, 0));
    const auto attributes = instance->getAttributes();
    EXPECT_EQ(attributes.at("FEC_CFG1"), "16");
    EXPECT_EQ(attributes.at("FEC_CFG2"), "16");
    EXPECT_EQ(attributes.at("CH0_RXPCSRESETMASK"), "3");
    EXPECT_EQ(attributes.at("CH1_TXPCSRESETMASK"), "16");
}

TEST(Sxd4Attributes, AreTheSameEachTime) {
    const auto instance = sxd4Instance({{correction(0, 1)}, {correction(1, 0)}});
    EXPECT_EQ(instance->getAttributes(), instance->getAttributes());
}

TEST(Sxd4Attributes, StandBehindThePrefix) {
    const auto instance = sxd4Instance({{correction(1, 2)}, {correction(3, 4)}});
    instance->attributePrefix = "p/";
    const auto attributes = instance->getAttributes();
    EXPECT_EQ(attributes.at("p/FEC_CFG0"), std::to_string(0x3142));
    EXPECT_EQ(attributes.at("p/FEC_CFG3"), "0");
}

TEST(Sxd4Attributes, OfAChannelWhosePassesAreGoneCountAsNothing) {
    const auto instance = sxd4Instance({{correction(1, 2)}, {correction(3, 4)}});
    instance->blockVarMap.pop_back();
    // Of channel 1 modes and bypasses are 0.
    EXPECT_EQ(wordsOf(*instance), words(0x0102, 0));
}

TEST(Sxd4Attributes, OfAnEmptyDatabaseAreRefused) {
    lane_cfg_sxd4_instance instance("bare", {}, {}, referenceDatabase("SXD4").m_paramTypes, {}, {},
                                    lanecfg_test::sxd4Settings());
    EXPECT_THROW(instance.getAttributes(), std::invalid_argument);
}

TEST(Sxd4Attributes, OfSharedWordsAreThoseOfTheLastChannel) {
    const VariableValues fast{
        {"TX_PAM_SEL", 1U}, {"RX_PAM_SEL", 1U}, {"TX_LINE_RATE", 28.125}, {"RX_LINE_RATE", 28.125}};
    // 14.0625 GHz over 156.25 MHz is 90; of the defaults 10.3125 is 66. Band gap power down is
    // bit 14.
    const auto second = sxd4Instance({{}, {fast}});
    EXPECT_EQ(second->getAttributes().at("HSCLK0_A_CFG"), std::to_string(0x4000 + 88));
    const auto first = sxd4Instance({{fast}, {}});
    EXPECT_EQ(first->getAttributes().at("HSCLK0_A_CFG"), std::to_string(0x4000 + 64));
}

TEST(Sxd4Instances, AnswerSideBySide) {
    const BlockRates modes{{correction(1, 2)}, {correction(3, 4)}};
    const BlockRates others{{correction(0, 0)}, {correction(0, 0)}};
    const auto alone = sxd4Instance(modes)->getAttributes();
    const auto first = sxd4Instance(modes);
    const auto second = sxd4Instance(others);
    EXPECT_EQ(wordsOf(*second), words(0, 0xf));
    EXPECT_EQ(first->getAttributes(), alone);
    EXPECT_EQ(wordsOf(*second), words(0, 0xf));
}

/// Random parameters of a rate; values beside the usual ones too.
VariableValues randomRate(std::mt19937& random) {
    const auto below = [&random](unsigned count) {
        return std::uniform_int_distribution<unsigned>(0, count - 1)(random);
    };
    const std::vector<double> lineRates{5.15625, 10.3125, 25.78125, 28.05, 53.125, 56.25, 57.9};
    const std::vector<double> references{60.0, 100.0, 156.25, 161.1328125, 212.5, 820.0};
    VariableValues rate;
    for (const std::string side : {"TX", "RX"}) {
        rate[side + "_LINE_RATE"] = lineRates[below(7)];
        rate[side + "_REFCLK_FREQUENCY"] = references[below(6)];
        rate[side + "_PAM_SEL"] = below(2);
        rate[side + "_ENABLE"] = below(4) != 0;
        rate[side + "_FEC_MODE"] = below(16);
        rate[side + "_GRAY_BYP"] = below(2) == 0;
        rate[side + "_USER_DATA_WIDTH"] = 16U << below(5);
        rate[side + "_INT_DATA_WIDTH"] = 16U << below(4);
        rate[side + "PROGDIV_FREQ_ENABLE"] = below(2) == 0;
    }
    rate["DSP_RESET_SEQ"] = below(3);
    rate["INS_LOSS_NYQ"] = static_cast<float>(below(40));
    rate["TEST_LOOPBACK"] = below(5) == 0;
    return rate;
}

/// The word that the fields of a pass make; a field that does not fit shows in a bit above it.
std::uint64_t composed(const variableMap& pass, const attributeInfo& record) {
    std::uint64_t word = 0;
    for (const auto& [name, place] : record.fields) {
        const auto value = boost::get<unsigned>(pass.at(name).value);
        EXPECT_LT(value, std::uint64_t{1} << static_cast<unsigned>(place[1])) << name;
        word += std::uint64_t{value} << static_cast<unsigned>(place[0]);
    }
    return word;
}

TEST(Sxd4ReferenceDatabase, HoldsEveryFieldOfEveryPass) {
    std::mt19937 random(9);
    BlockRates rates(2);
    for (unsigned rate = 0; rate < 150; ++rate) {
        rates[rate % 2].push_back(randomRate(random));
    }
    const auto instance = sxd4Instance(rates);
    const auto registers = referenceDatabase("SXD4").m_fields;
    for (const auto& passes : instance->blockVarMap) {
        ASSERT_THAT(passes, SizeIs(75));
        for (const variableMap& pass : passes) {
            for (const auto& [name, record] : registers) {
                if (!record.fields.empty()) {
                    EXPECT_EQ(boost::get<unsigned>(pass.at(name).value), composed(pass, record))
                        << name;
                }
            }
        }
    }
}

}  // namespace
}  // namespace sable_lanecfg
