#include "families/sxd4/sxd4_undelivered_fields.h"
#include "sxd4_passes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <map>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::Sxd4Passes;
using lanecfg_test::VariableValues;
using lanecfg_test::with;

/// What computed fields and ports are for some parameters.
struct FieldCase {
    std::string name;
    VariableValues parameters;
    std::map<std::string, unsigned> fields;
};

void PrintTo(const FieldCase& row, std::ostream* output) {
    *output << row.name;
}

class Sxd4Field : public testing::TestWithParam<FieldCase> {};

TEST_P(Sxd4Field, IsWhatItsParametersCallFor) {
    const Sxd4Passes passes({GetParam().parameters});
    for (const auto& [name, value] : GetParam().fields) {
        EXPECT_EQ(passes.number(name), value) << name;
    }
}

const auto nameOf = [](const auto& row) { return row.param.name; };

INSTANTIATE_TEST_SUITE_P(ErrorCorrection, Sxd4Field,
                         testing::Values(FieldCase{"NoCorrection",
                                                   {{"RX_FEC_MODE", 0U}, {"TX_FEC_MODE", 0U}},
                                                   {{"FEC_CFG0.CTL_RX0_MODE", 0},
                                                    {"FEC_CFG0.CTL_RX1_MODE", 0},
                                                    {"FEC_CFG0.CTL_TX0_MODE", 0},
                                                    {"FEC_CFG0.CTL_TX1_MODE", 0},
                                                    {"FEC_CFG3.FEC_RX0_BYPASS", 1},
                                                    {"FEC_CFG3.FEC_RX1_BYPASS", 1},
                                                    {"FEC_CFG3.FEC_TX0_BYPASS", 1},
                                                    {"FEC_CFG3.FEC_TX1_BYPASS", 1},
                                                    {"FEC_CFG1.FRM_LNGTH_SLICE0", 0},
                                                    {"FEC_CFG2.FRM_LNGTH_SLICE1", 0}}},
                                         FieldCase{"CorrectionToReceive",
                                                   {{"RX_FEC_MODE", 3U}, {"TX_FEC_MODE", 0U}},
                                                   {{"FEC_CFG0.CTL_RX0_MODE", 3},
                                                    {"FEC_CFG0.CTL_RX1_MODE", 3},
                                                    {"FEC_CFG0.CTL_TX0_MODE", 0},
                                                    {"FEC_CFG0.CTL_TX1_MODE", 0},
                                                    {"FEC_CFG3.FEC_RX0_BYPASS", 0},
                                                    {"FEC_CFG3.FEC_RX1_BYPASS", 0},
                                                    {"FEC_CFG3.FEC_TX0_BYPASS", 1},
                                                    {"FEC_CFG3.FEC_TX1_BYPASS", 1},
                                                    {"FEC_CFG1.FRM_LNGTH_SLICE0", 3},
                                                    {"FEC_CFG2.FRM_LNGTH_SLICE1", 3}}},
                                         FieldCase{"CorrectionToTransmit",
                                                   {{"RX_FEC_MODE", 0U}, {"TX_FEC_MODE", 2U}},
                                                   {{"FEC_CFG0.CTL_RX0_MODE", 0},
                                                    {"FEC_CFG0.CTL_RX1_MODE", 0},
                                                    {"FEC_CFG0.CTL_TX0_MODE", 2},
                                                    {"FEC_CFG0.CTL_TX1_MODE", 2},
                                                    {"FEC_CFG3.FEC_RX0_BYPASS", 1},
                                                    {"FEC_CFG3.FEC_RX1_BYPASS", 1},
                                                    {"FEC_CFG3.FEC_TX0_BYPASS", 0},
                                                    {"FEC_CFG3.FEC_TX1_BYPASS", 0},
                                                    {"FEC_CFG1.FRM_LNGTH_SLICE0", 0},
                                                    {"FEC_CFG2.FRM_LNGTH_SLICE1", 0}}}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(ResetMasks, Sxd4Field,
                         testing::Values(FieldCase{"PlainReceiver",
                                                   {{"RX_FEC_MODE", 0U}, {"DSP_RESET_SEQ", 0U}},
                                                   {{"RXPCSRESETMASK", 1}, {"RXPMARESETMASK", 1}}},
                                         FieldCase{"ReceiverWithCorrection",
                                                   {{"RX_FEC_MODE", 1U}, {"DSP_RESET_SEQ", 0U}},
                                                   {{"RXPCSRESETMASK", 3}, {"RXPMARESETMASK", 1}}},
                                         FieldCase{"ReceiverWithSignalProcessor",
                                                   {{"RX_FEC_MODE", 0U}, {"DSP_RESET_SEQ", 1U}},
                                                   {{"RXPCSRESETMASK", 1}, {"RXPMARESETMASK", 3}}},
                                         FieldCase{"ReceiverWithBoth",
                                                   {{"RX_FEC_MODE", 5U}, {"DSP_RESET_SEQ", 2U}},
                                                   {{"RXPCSRESETMASK", 3}, {"RXPMARESETMASK", 3}}},
                                         FieldCase{"PlainTransmitter",
                                                   {{"TX_FEC_MODE", 0U}, {"RX_FEC_MODE", 1U}},
                                                   {{"TXPCSRESETMASK", 0}, {"TXPMARESETMASK", 0}}},
                                         FieldCase{"TransmitterWithCorrection",
                                                   {{"TX_FEC_MODE", 2U}},
                                                   {{"TXPCSRESETMASK", 2}, {"TXPMARESETMASK", 2}}}),
                         nameOf);

FieldCase outclockCase(const std::string& source, unsigned code) {
    return {source,
            {{"TX_OUTCLK_SOURCE", source}, {"RX_OUTCLK_SOURCE", std::string()}},
            {{"A_CH_CFG4.A_TXOUTCLKSEL", code},
             {"TXOUTCLKSEL", code},
             {"A_CH_CFG6.A_RXOUTCLKSEL", 0},
             {"RXOUTCLKSEL", 0}}};
}

FieldCase receiveOutclockCase(const std::string& source, unsigned code) {
    return {"Receive" + source,
            {{"TX_OUTCLK_SOURCE", std::string()}, {"RX_OUTCLK_SOURCE", source}},
            {{"A_CH_CFG4.A_TXOUTCLKSEL", 0},
             {"TXOUTCLKSEL", 0},
             {"A_CH_CFG6.A_RXOUTCLKSEL", code},
             {"RXOUTCLKSEL", code}}};
}

INSTANTIATE_TEST_SUITE_P(
    OutputClocks, Sxd4Field,
    testing::Values(outclockCase("TXOUTCLKPCS", 1), outclockCase("TXOUTCLKPMA", 2),
                    outclockCase("TXPLLREFCLK", 3), outclockCase("TXPROGDIVCLK", 5),
                    outclockCase("CLKTESTSIG", 6), outclockCase("RXOUTCLKPMA", 0),
                    receiveOutclockCase("RXOUTCLKPCS", 1), receiveOutclockCase("RXOUTCLKPMA", 2),
                    receiveOutclockCase("RXPLLREFCLK", 3), receiveOutclockCase("RXPROGDIVCLK", 5),
                    receiveOutclockCase("CLKTESTSIG", 6), receiveOutclockCase("TXOUTCLKPMA", 0)),
    nameOf);

/// Every field that copies a flag, by the flag.
const std::map<std::string, std::string>& copiedFlags() {
    static const std::map<std::string, std::string> fields{
        {"TX_GRAY_LITTLEENDIAN", "TX_PCS_CFG0.TX_GRAY_ENDIAN"},
        {"TX_GRAY_BYP", "TX_PCS_CFG0.TX_GRAY_BYP_EN"},
        {"TX_PRECODE_LITTLEENDIAN", "TX_PCS_CFG0.TX_PRECODE_ENDIAN"},
        {"TX_PRECODE_BYP", "TX_PCS_CFG0.TX_PRECODE_BYP_EN"},
        {"TXPROGDIV_FREQ_ENABLE", "TX_DRV_CFG4.PROGDIV_PDBV_DIV"},
        {"RX_GRAY_LITTLEENDIAN", "RX_PCS_CFG0.RX_GRAY_ENDIAN"},
        {"RX_GRAY_BYP", "RX_PCS_CFG0.RX_GRAY_BYP_EN"},
        {"RX_PRECODE_LITTLEENDIAN", "RX_PCS_CFG0.RX_PRECODE_ENDIAN"},
        {"RX_PRECODE_BYP", "RX_PCS_CFG0.RX_PRECODE_BYP_EN"},
        {"RXPROGDIV_FREQ_ENABLE", "RX_ANA_CFG1.PROGDIV_DIV_PDB"},
        {"RX_TERMINATION", "RX_PAD_CFG0.PAD_RTERM_VCOM_MODE"},
        {"TEST_LOOPBACK", "RX_APT_CFG21A.GCMODE1"}};
    return fields;
}

TEST(Sxd4Flags, AreCopied) {
    VariableValues set;
    VariableValues unset;
    for (const auto& [flag, field] : copiedFlags()) {
        set[flag] = true;
        unset[flag] = false;
    }
    const Sxd4Passes passes({set, unset});
    for (const auto& [flag, field] : copiedFlags()) {
        EXPECT_EQ(passes.number(field, 0), 1U) << flag;
        EXPECT_EQ(passes.number(field, 1), 0U) << flag;
    }
}

TEST(Sxd4Flags, AreCopiedEachToItsOwnField) {
    for (const auto& [flag, ownField] : copiedFlags()) {
        VariableValues parameters;
        for (const auto& [other, field] : copiedFlags()) {
            parameters[other] = other == flag;
        }
        const Sxd4Passes passes({parameters});
        for (const auto& [other, field] : copiedFlags()) {
            EXPECT_EQ(passes.number(field), other == flag ? 1U : 0U) << flag << " in " << field;
        }
    }
}

FieldCase pamCase(const std::string& name, unsigned transmit, unsigned receive) {
    const unsigned isTransmitNrz = transmit == 0 ? 0 : 1;
    const unsigned isReceiveNrz = receive == 0 ? 0 : 1;
    return {name,
            {{"TX_PAM_SEL", transmit}, {"RX_PAM_SEL", receive}},
            {{"TX_ANA_CFG1.CTL_PAM2_HIBT", isTransmitNrz},
             {"RX_APT_CFG21B.NRZFORM", isReceiveNrz},
             {"RX_APT_CTRL_CFG2.RX_NRZ", isReceiveNrz},
             {"RX_CDR_CFG1B.NRZMODE", isReceiveNrz}}};
}

FieldCase widthCase(unsigned bits, const std::string& coding, unsigned code) {
    return {"UserWidth" + std::to_string(bits) + "In" + coding,
            {{"TX_USER_DATA_WIDTH", bits},
             {"TX_DATA_ENCODING", coding},
             {"RX_USER_DATA_WIDTH", bits},
             {"RX_DATA_DECODING", coding}},
            {{"TX_PCS_CFG0.TX_DATA_WIDTH", code}, {"RX_PCS_CFG0.RX_DATA_WIDTH", code}}};
}

FieldCase internalWidthCase(unsigned bits, unsigned code) {
    return {"InternalWidth" + std::to_string(bits),
            {{"TX_INT_DATA_WIDTH", bits}, {"RX_INT_DATA_WIDTH", bits}},
            {{"TX_PCS_CFG0.TX_INT_DATA_WIDTH", code}, {"RX_PCS_CFG0.RX_INT_DATA_WIDTH", code}}};
}

INSTANTIATE_TEST_SUITE_P(
    LineCoding, Sxd4Field,
    testing::Values(
        pamCase("Pam4Both", 0, 0), pamCase("NrzToTransmit", 1, 0), pamCase("NrzToReceive", 0, 2),
        FieldCase{"ClocksAreEqual", {{"RX_PPM_OFFSET", 0U}}, {{"RX_CDR_CFG0A.CDRENF", 0}}},
        FieldCase{"ClocksDiffer", {{"RX_PPM_OFFSET", 1U}}, {{"RX_CDR_CFG0A.CDRENF", 1}}},
        widthCase(16, "RAW", 3), widthCase(32, "RAW", 5), widthCase(80, "RAW", 7),
        widthCase(160, "RAW", 9), widthCase(16, "8B10B", 2), widthCase(160, "8B10B", 9),
        widthCase(24, "RAW", 0), internalWidthCase(16, 0), internalWidthCase(32, 1),
        internalWidthCase(40, 1), internalWidthCase(64, 2), internalWidthCase(80, 2),
        internalWidthCase(128, 0), internalWidthCase(160, 0)),
    nameOf);

/// A line of which the equaliser makes this many steps.
FieldCase equaliserCase(const std::string& name, float loss, double lineRate, unsigned pamSelection,
                        std::size_t steps, bool isLoopback = false) {
    static const std::map<std::string, std::vector<unsigned>> fields{
        {"RX_CTLE_CFG0.CTLE_BIAS_CTRL_CODE", {0, 1, 2, 3, 4, 5, 6}},
        {"RX_ANA_CFG0.CTLE_HF1_RCAL_ENB", {0, 0, 0, 0, 1, 1, 1}},
        {"RX_ANA_CFG0.CTLE_HF2_RCAL_ENB", {0, 0, 1, 1, 1, 1, 1}},
        {"RX_CTLE_CFG2.CTLE_EXT_RDEG_CTRL", {0, 1, 2, 3, 4, 5, 6}},
        {"RX_CTLE_CFG1.AGC_EXT_RL_CTRL", {0, 0, 1, 1, 2, 2, 3}},
        {"RX_CTLE_CFG1.CTLE_MF_EXT_RL_CTRL", {0, 0, 0, 1, 1, 2, 2}},
        {"RX_APT_CFG11A.RATIO_ADJ", {0, 2, 4, 6, 8, 10, 12}}};
    FieldCase made{name,
                   {{"INS_LOSS_NYQ", loss},
                    {"RX_LINE_RATE", lineRate},
                    {"RX_PAM_SEL", pamSelection},
                    {"TEST_LOOPBACK", isLoopback}},
                   {}};
    for (const auto& [field, values] : fields) {
        made.fields[field] = values.at(steps);
    }
    return made;
}

constexpr unsigned pam4 = 0;
constexpr unsigned nrz = 1;

INSTANTIATE_TEST_SUITE_P(
    Equaliser, Sxd4Field,
    testing::Values(
        equaliserCase("NoLoss", 0.0F, 10.0, nrz, 0), equaliserCase("BelowTen", 9.99F, 10.0, nrz, 0),
        equaliserCase("Ten", 10.0F, 10.0, nrz, 1), equaliserCase("Fifteen", 15.0F, 10.0, nrz, 2),
        equaliserCase("Twenty", 20.0F, 10.0, nrz, 3),
        equaliserCase("TwentyFive", 25.0F, 10.0, nrz, 4),
        equaliserCase("MuchLoss", 60.0F, 10.0, nrz, 4),
        equaliserCase("FastNrz", 60.0F, 20.0, nrz, 5),
        equaliserCase("NotQuiteFastNrz", 60.0F, 19.99, nrz, 4),
        equaliserCase("SlowPam4", 60.0F, 39.99, pam4, 5),
        equaliserCase("FastPam4", 60.0F, 40.0, pam4, 6),
        equaliserCase("FastPam4WithoutLoss", 0.0F, 40.0, pam4, 2),
        equaliserCase("Loopback", 60.0F, 40.0, pam4, 0, true),
        equaliserCase("NegativeLoss", -1.0F, 10.0, nrz, 0),
        equaliserCase("LossThatIsNoNumber", std::numeric_limits<float>::quiet_NaN(), 10.0, nrz, 0),
        equaliserCase("RateThatIsNoNumber", 60.0F, std::numeric_limits<double>::quiet_NaN(), nrz,
                      4)),
    nameOf);

const std::vector<std::string> equaliserFields{
    "RX_CTLE_CFG0.CTLE_BIAS_CTRL_CODE", "RX_ANA_CFG0.CTLE_HF1_RCAL_ENB",
    "RX_ANA_CFG0.CTLE_HF2_RCAL_ENB",    "RX_CTLE_CFG2.CTLE_EXT_RDEG_CTRL",
    "RX_CTLE_CFG1.AGC_EXT_RL_CTRL",     "RX_CTLE_CFG1.CTLE_MF_EXT_RL_CTRL",
    "RX_APT_CFG11A.RATIO_ADJ"};

/// A line, and one that asks the same of the equaliser or more.
struct LinePair {
    VariableValues less;
    VariableValues more;
};

/// Random lines, and how two of them compare.
class Sxd4Equaliser : public testing::Test {
  protected:
    float loss() { return loss_(random_); }
    double rate() { return rate_(random_); }
    unsigned pamSelection() { return random_() % 2 == 0 ? pam4 : nrz; }

    /// Checks many pairs of what `makePair` gives.
    template <class MakePair>
    static void expectNeverLess(const MakePair& makePair) {
        constexpr std::size_t pairs = 150;
        std::vector<VariableValues> rates;
        for (std::size_t pair = 0; pair < pairs; ++pair) {
            const LinePair lines = makePair();
            rates.push_back(lines.less);
            rates.push_back(lines.more);
        }
        const Sxd4Passes passes(rates);
        for (std::size_t pair = 0; pair < pairs; ++pair) {
            for (const std::string& field : equaliserFields) {
                EXPECT_LE(passes.number(field, 2 * pair), passes.number(field, 2 * pair + 1))
                    << field;
            }
        }
    }

  private:
    std::mt19937 random_{4};
    std::uniform_real_distribution<float> loss_{0.0F, 40.0F};
    std::uniform_real_distribution<double> rate_{5.0, 60.0};
};

TEST_F(Sxd4Equaliser, NeverDoesLessForMoreLoss) {
    expectNeverLess([this] {
        const float less = loss();
        const VariableValues line{{"RX_LINE_RATE", rate()}, {"RX_PAM_SEL", pamSelection()}};
        return LinePair{with(line, {{"INS_LOSS_NYQ", less}}),
                        with(line, {{"INS_LOSS_NYQ", less + loss()}})};
    });
}

TEST_F(Sxd4Equaliser, NeverDoesLessForAHigherRate) {
    expectNeverLess([this] {
        const double slow = rate();
        const VariableValues line{{"INS_LOSS_NYQ", loss()}, {"RX_PAM_SEL", pamSelection()}};
        return LinePair{with(line, {{"RX_LINE_RATE", slow}}),
                        with(line, {{"RX_LINE_RATE", slow + rate()}})};
    });
}

TEST_F(Sxd4Equaliser, NeverDoesLessForPam4AtTheSameSymbolRate) {
    expectNeverLess([this] {
        const double symbolRate = rate();
        const VariableValues line{{"INS_LOSS_NYQ", loss()}};
        return LinePair{with(line, {{"RX_PAM_SEL", nrz}, {"RX_LINE_RATE", symbolRate}}),
                        with(line, {{"RX_PAM_SEL", pam4}, {"RX_LINE_RATE", 2.0 * symbolRate}})};
    });
}

TEST(Sxd4UndeliveredFields, HoldTheValueOfTheTableWhateverTheParameters) {
    const Sxd4Passes passes({{{"TX_PAM_SEL", 0U}},
                             {{"TX_PAM_SEL", 1U},
                              {"RX_PAM_SEL", 1U},
                              {"TX_FEC_MODE", 3U},
                              {"RX_FEC_MODE", 3U},
                              {"DSP_RESET_SEQ", 1U},
                              {"INS_LOSS_NYQ", 40.0F},
                              {"TXPROGDIV_FREQ_ENABLE", true}}});
    for (const undeliveredField& row : undeliveredFields()) {
        const std::string name = std::string(row.registerName) + "." + std::string(row.field);
        EXPECT_EQ(passes.number(name, 0), row.value) << name;
        EXPECT_EQ(passes.number(name, 1), row.value) << name;
    }
}

}  // namespace
}  // namespace sable_lanecfg
