#include "families/sxc/sxc_catalogue.h"

#include "families/sxb/sxb_pll_catalogue.h"
#include "families/sxb/sxb_rx_catalogue.h"
#include "families/sxb/sxb_tx_catalogue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace sable_lanecfg {
namespace {

using testing::ElementsAreArray;

using catalogueFunction = const register_catalogue& (*)();

/// A rule set with its number of rules, all together and of each kind of field.
struct SetCase {
    std::string name;
    catalogueFunction catalogue;
    std::size_t rules;
    std::size_t constants;
    std::size_t copies;
};

void PrintTo(const SetCase& row, std::ostream* output) {
    *output << row.name;
}

std::size_t fieldsOfKind(const register_catalogue& catalogue, fieldKind kind) {
    std::size_t count = 0;
    for (const catalogueEntry& entry : catalogue.entries()) {
        count += static_cast<std::size_t>(
            std::count_if(entry.fields.begin(), entry.fields.end(),
                          [kind](const registerField& field) { return field.kind == kind; }));
    }
    return count;
}

class SxcSet : public testing::TestWithParam<SetCase> {};

TEST_P(SxcSet, RegistersItsNumberOfRules) {
    EXPECT_EQ(GetParam().catalogue().ruleCount(), GetParam().rules);
}

TEST_P(SxcSet, HasItsConstantsAndCopies) {
    EXPECT_EQ(fieldsOfKind(GetParam().catalogue(), fieldKind::constant), GetParam().constants);
    EXPECT_EQ(fieldsOfKind(GetParam().catalogue(), fieldKind::copy), GetParam().copies);
}

// Constant fields of SXB are 668 beside six constant words, 628 beside three, and 132. The PLL set
// has 37 more, three that were computed, four less that are computed now, and one less at all; the
// receive set three and the transmit set four that were computed.
INSTANTIATE_TEST_SUITE_P(Of, SxcSet,
                         testing::Values(SetCase{"PLL", sxcPllCatalogue, 936, 668 + 37 + 3 - 4 - 1,
                                                 5 + 1},
                                         SetCase{"RX", sxcRxCatalogue, 814, 628 + 3, 1},
                                         SetCase{"TX", sxcTxCatalogue, 198, 132 + 4, 2}),
                         [](const auto& set) { return set.param.name; });

using fieldValue = std::pair<std::string, unsigned int>;

/// Constants of a register that SXB does not have, or not so.
struct RegisterConstants {
    std::string name;
    catalogueFunction catalogue;
    std::vector<fieldValue> constants;
};

void PrintTo(const RegisterConstants& row, std::ostream* output) {
    *output << row.name;
}

std::vector<fieldValue> constantsOf(const register_catalogue& catalogue,
                                    const RegisterConstants& expected) {
    std::vector<fieldValue> found;
    for (const registerField& field : catalogue.fieldsOf(expected.name)) {
        const bool isAsked = std::any_of(
            expected.constants.begin(), expected.constants.end(),
            [&field](const fieldValue& constant) { return constant.first == field.name; });
        if (isAsked && field.kind == fieldKind::constant) {
            found.emplace_back(field.name, field.value);
        }
    }
    return found;
}

class SxcConstants : public testing::TestWithParam<RegisterConstants> {};

TEST_P(SxcConstants, AreThoseOfTheRegister) {
    EXPECT_THAT(constantsOf(GetParam().catalogue(), GetParam()),
                testing::UnorderedElementsAreArray(GetParam().constants));
}

INSTANTIATE_TEST_SUITE_P(
    Added, SxcConstants,
    testing::Values(RegisterConstants{"CHL_RSV_CFG0",
                                      sxcPllCatalogue,
                                      {{"XPIPE5_PIPELINE_OVRD_EN", 0},
                                       {"XPIPE5_PIPELINE_OVRD", 0},
                                       {"GEN5_RATE_IN_PROG_OVRD_EN", 0},
                                       {"GEN5_RATE_IN_PROG_OVRD", 0},
                                       {"RATE_DATA_PLL_RESET_OPTION", 0},
                                       {"RATE_TX_SIMPLEX_WAIT_MST_RST_EN", 1},
                                       {"RATE_RX_SIMPLEX_WAIT_MST_RST_EN", 1},
                                       {"RX128B130B_RESET_ON_CDRSLIP_DIS", 0}}},
                    RegisterConstants{"CHL_RSV_CFG1",
                                      sxcPllCatalogue,
                                      {{"PIPERST_CHNL_RST_CONTRL_DIS", 0},
                                       {"PIPERST_HSCK_RST_CONTRL_DIS", 0},
                                       {"TXPRBSFORCEERR_PIN_EN", 0},
                                       {"TXELECIDLE_PIN_EN", 1},
                                       {"TXDETECTRXLOOPBACK_PIN_EN", 1},
                                       {"A_TXPRBSFORCEERR", 0},
                                       {"A_TXELECIDLE", 0},
                                       {"A_TXDETECTRXLOOPBACK", 0},
                                       {"BUFGT_FORCE_CEMASK_MACCLK", 0},
                                       {"PIPE_128B130B_RX_DELAY_TIME", 3}}},
                    RegisterConstants{"CHL_RSV_CFG2",
                                      sxcPllCatalogue,
                                      {{"EB128B130B_64_MIN_LAT", 8},
                                       {"EB128B130B_64_MAX_LAT", 22},
                                       {"EB128B130B_64_EMPTY_THRESH", 0},
                                       {"EB128B130B_64_FULL_THRESH", 31},
                                       {"EB128B130B_64_EIOS_LPBK4_BYP", 0},
                                       {"EB128B130B_64_ONE_SKP_INS_DEL", 1},
                                       {"EB128B130B_64_BLKALGN_CTL", 0},
                                       {"RX128B130B_DECODER_AUTO_EN", 0},
                                       {"RX128B130B_64_DECODER_RXDATAVALID_ADJ_EN", 0},
                                       {"EB128B130B_64_AUTO_REALIGN", 0},
                                       {"RX128B130B_DECODER_DIS", 0},
                                       {"EB128B130B_64_EIOS_DEL_SEL", 0}}},
                    RegisterConstants{"CHL_RSV_CFG3",
                                      sxcPllCatalogue,
                                      {{"PCIE_LPBK_BLOCK_INIT_DATA_DIS", 0},
                                       {"PCIE_128B130B_64BIT_TX_ENC_SEL", 0},
                                       {"PCIE_128B130B_64B_TX_LPBK_RXDATAVALID_ADJ_DIS", 0}}},
                    RegisterConstants{"CTRL_RSV_CFG0",
                                      sxcPllCatalogue,
                                      {{"CH0_RX_ILO_RESET_EN", 1},
                                       {"CH1_RX_ILO_RESET_EN", 1},
                                       {"CH2_RX_ILO_RESET_EN", 1},
                                       {"CH3_RX_ILO_RESET_EN", 1}}}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Changed, SxcConstants,
    testing::Values(RegisterConstants{"HSDIST_CFG", sxcPllCatalogue, {{"HSDIST_CTRL", 0}}},
                    RegisterConstants{"PIN_CFG0",
                                      sxcPllCatalogue,
                                      {{"MST_TX_RESET_PIN_EN", 15}, {"MST_RX_RESET_PIN_EN", 15}}}),
    [](const auto& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    OnceComputed, SxcConstants,
    testing::Values(RegisterConstants{"A_CFG0", sxcPllCatalogue, {{"A_BGRCALOVRD_EN", 1}}},
                    RegisterConstants{"FABRIC_INTF_CFG1", sxcPllCatalogue, {{"A_RXPD", 0}}},
                    RegisterConstants{"FABRIC_INTF_CFG3", sxcPllCatalogue, {{"A_TXPD", 0}}},
                    RegisterConstants{"RX_CTLE_CFG1",
                                      sxcRxCatalogue,
                                      {{"RCAL_OS_PAD", 0}, {"CDR2APT_SCANMODE1", 1}}},
                    RegisterConstants{"RX_PCS_CFG2", sxcRxCatalogue, {{"FIFO_INIT_RD_ADDR", 4}}},
                    RegisterConstants{"TX_PCS_CFG0", sxcTxCatalogue, {{"FIFO_INIT_RD_ADDR", 4}}},
                    RegisterConstants{"PIPE_TX_EQ_CFG3",
                                      sxcTxCatalogue,
                                      {{"TX_DEEMPH_0", 18}, {"TX_DEEMPH_1", 12}}},
                    RegisterConstants{"TX_DRV_CFG0", sxcTxCatalogue, {{"TX_CTL_DRV_EN", 0}}}),
    [](const auto& row) { return row.param.name; });

const registerField* fieldOf(const std::vector<registerField>& fields, const std::string& name) {
    const auto found =
        std::find_if(fields.begin(), fields.end(),
                     [&name](const registerField& field) { return field.name == name; });
    return found == fields.end() ? nullptr : &*found;
}

TEST(SxcPllCatalogue, TheLockOfTheOscillatorsPllIsTheUseOfTheReceiver) {
    const auto fields = sxcPllCatalogue().fieldsOf("RESET_CFG");
    const registerField* const lock = fieldOf(fields, "ILORESET_PLLLOCK_SEL");
    ASSERT_NE(lock, nullptr);
    EXPECT_EQ(lock->kind, fieldKind::copy);
    EXPECT_EQ(lock->source, "RX_IN_USE");
}

TEST(SxcPllCatalogue, LacksTheReservedBitsOfTheOscillator) {
    const auto fields = sxcPllCatalogue().fieldsOf("CHCLK_ILO_CFG");
    EXPECT_EQ(fields.size(), sxbPllCatalogue().fieldsOf("CHCLK_ILO_CFG").size() - 2);
    EXPECT_EQ(fieldOf(fields, "RESERVED_BIT17"), nullptr);
    EXPECT_EQ(fieldOf(fields, "RESERVED_BIT15"), nullptr);
}

TEST(SxcPllCatalogue, KeepsTheNineFieldsBeforeThoseThatItAdds) {
    const auto fields = sxcPllCatalogue().fieldsOf("CHL_RSV_CFG0");
    const auto known = sxbPllCatalogue().fieldsOf("CHL_RSV_CFG0");
    ASSERT_EQ(known.size(), 9U);
    ASSERT_EQ(fields.size(), 9U + 8U);
    for (std::size_t index = 0; index < known.size(); ++index) {
        EXPECT_EQ(fields[index].name, known[index].name);
        EXPECT_EQ(fields[index].value, known[index].value) << known[index].name;
    }
}

TEST(SxcCatalogue, IsTheThreeSetsInTheOrderOfRegistration) {
    EXPECT_EQ(sxcCatalogue().ruleCount(), 936U + 814U + 198U);
    EXPECT_EQ(sxcCatalogue().entries().front().name, sxcRxCatalogue().entries().front().name);
    EXPECT_EQ(sxcCatalogue().entries().back().name, sxcPllCatalogue().entries().back().name);
}

// Everything that is named nowhere above is as in SXB.

/// "REGISTER.FIELD" of every field that differs, is added, or is gone.
const std::vector<std::string>& differingFields() {
    static const std::vector<std::string> names{"RESET_CFG.TX_PLLLOCK_SEL",
                                                "RESET_CFG.RX_PLLLOCK_SEL",
                                                "RESET_CFG.ILORESET_PLLLOCK_SEL",
                                                "CHCLK_ILO_CFG.RESERVED_BIT17",
                                                "CHCLK_ILO_CFG.RESERVED_BIT15",
                                                "HSDIST_CFG.HSDIST_CTRL",
                                                "PIN_CFG0.MST_TX_RESET_PIN_EN",
                                                "PIN_CFG0.MST_RX_RESET_PIN_EN",
                                                "A_CFG0.A_BGRCALOVRD_EN",
                                                "FABRIC_INTF_CFG1.A_RXPD",
                                                "FABRIC_INTF_CFG3.A_TXPD",
                                                "CTRL_RSV_CFG0.CH0_RX_ILO_RESET_EN",
                                                "CTRL_RSV_CFG0.CH1_RX_ILO_RESET_EN",
                                                "CTRL_RSV_CFG0.CH2_RX_ILO_RESET_EN",
                                                "CTRL_RSV_CFG0.CH3_RX_ILO_RESET_EN",
                                                "MST_RESET_CFG.CH0_ILO_RESET_EN",
                                                "MST_RESET_CFG.CH1_ILO_RESET_EN",
                                                "MST_RESET_CFG.CH2_ILO_RESET_EN",
                                                "MST_RESET_CFG.CH3_ILO_RESET_EN",
                                                "ADAPT_APT_CFG.divider_data",
                                                "RX_CTLE_CFG1.RCAL_OS_PAD",
                                                "RX_CTLE_CFG1.CDR2APT_SCANMODE1",
                                                "RX_PCS_CFG2.FIFO_INIT_RD_ADDR",
                                                "TX_PCS_CFG0.FIFO_INIT_RD_ADDR",
                                                "PIPE_TX_EQ_CFG3.TX_DEEMPH_0",
                                                "PIPE_TX_EQ_CFG3.TX_DEEMPH_1",
                                                "TX_DRV_CFG0.TX_CTL_DRV_EN"};
    return names;
}

bool differs(const std::string& registerName, const std::string& field) {
    const auto& names = differingFields();
    const std::string name = fieldName(registerName, field);
    const bool isReserved = registerName.find("CHL_RSV_CFG") == 0 && registerName != "CHL_RSV_CFG4";
    return isReserved || std::find(names.begin(), names.end(), name) != names.end();
}

/// A field as text: of which register, what it is, and with which value or source.
using fieldText = std::tuple<std::string, std::string, fieldKind, unsigned int, std::string>;

std::vector<fieldText> likeFields(const register_catalogue& catalogue) {
    std::vector<fieldText> fields;
    for (const catalogueEntry& entry : catalogue.entries()) {
        for (const registerField& field : entry.fields) {
            const std::string registerName(entry.name);
            if (!differs(registerName, std::string(field.name))) {
                fields.emplace_back(registerName, field.name, field.kind, field.value,
                                    field.source);
            }
        }
    }
    return fields;
}

/// Names and kinds of the entries in order; those that change their kind count as registers.
std::vector<std::pair<std::string, entryKind>> entriesOf(const register_catalogue& catalogue) {
    std::vector<std::pair<std::string, entryKind>> entries;
    for (const catalogueEntry& entry : catalogue.entries()) {
        const bool isReserved = entry.name == "CHL_RSV_CFG1" || entry.name == "CHL_RSV_CFG2" ||
                                entry.name == "CHL_RSV_CFG3";
        entries.emplace_back(entry.name, isReserved ? entryKind::wholeRegister : entry.kind);
    }
    return entries;
}

struct SetPair {
    std::string name;
    catalogueFunction ofSxb;
    catalogueFunction ofSxc;
    std::size_t likeFields;
};

void PrintTo(const SetPair& row, std::ostream* output) {
    *output << row.name;
}

class SxcLikeness : public testing::TestWithParam<SetPair> {};

TEST_P(SxcLikeness, HasTheRegistersOfSxbInTheirOrder) {
    EXPECT_THAT(entriesOf(GetParam().ofSxc()), ElementsAreArray(entriesOf(GetParam().ofSxb())));
}

TEST_P(SxcLikeness, HasEveryOtherFieldAsSxbHasIt) {
    const auto expected = likeFields(GetParam().ofSxb());
    EXPECT_EQ(expected.size(), GetParam().likeFields);
    EXPECT_THAT(likeFields(GetParam().ofSxc()), ElementsAreArray(expected));
}

// The PLL set of SXB has 816 fields; without 13 of the list and the nine of CHL_RSV_CFG0.
INSTANTIATE_TEST_SUITE_P(Of, SxcLikeness,
                         testing::Values(SetPair{"PLL", sxbPllCatalogue, sxcPllCatalogue,
                                                 816 - 13 - 9},
                                         SetPair{"RX", sxbRxCatalogue, sxcRxCatalogue, 747 - 3},
                                         SetPair{"TX", sxbTxCatalogue, sxcTxCatalogue, 171 - 4}),
                         [](const auto& set) { return set.param.name; });

}  // namespace
}  // namespace sable_lanecfg
