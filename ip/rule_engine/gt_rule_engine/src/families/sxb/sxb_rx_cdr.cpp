#include "families/sxb/sxb_rx_cdr.h"

#include "families/common/rule_arithmetic.h"
#include "families/sxb/sxb_rx_rule_groups.h"
#include "families/sxb/sxb_silicon.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <optional>

namespace sable_lanecfg {

namespace {

constexpr code_table<unsigned int, 12> proportionalDividers{{{8, 0},
                                                             {16, 1},
                                                             {32, 2},
                                                             {64, 3},
                                                             {128, 4},
                                                             {256, 5},
                                                             {512, 6},
                                                             {1024, 7},
                                                             {2048, 8},
                                                             {4096, 9},
                                                             {8192, 10},
                                                             {1, 15}}};
constexpr code_table<unsigned int, 8> frequencyDividers{
    {{1, 0}, {2, 1}, {4, 2}, {8, 3}, {16, 4}, {32, 5}, {64, 6}, {128, 7}}};
constexpr code_table<double, 7> factors{
    {{0.25, 0}, {0.5, 1}, {1.0, 2}, {2.0, 3}, {4.0, 4}, {8.0, 5}, {0.0, 7}}};

constexpr double anyRate = std::numeric_limits<double>::infinity();

/// Widths up to a line rate, in Gb/s; the rows of a width stand in ascending order.
struct widthRow {
    unsigned int internalWidth;
    double highestRate;
    recoveryWidths widths;
    bool selectsByEqualiser;  ///< the decision inputs follow the equaliser
};

constexpr widthRow widthRows[] = {
    {80, anyRate, {0, 0, 7, 1}, true}, {64, anyRate, {0, 0, 6, 1}, true},
    {40, anyRate, {0, 0, 5, 1}, true}, {32, 21.6, {0, 0, 4, 1}, true},
    {20, 2.7, {11, 1, 0, 0}, false},   {20, 5.4, {1, 1, 0, 0}, false},
    {20, anyRate, {0, 0, 3, 1}, true}, {16, 2.7, {10, 1, 0, 0}, false},
    {16, 5.4, {0, 1, 0, 0}, false},    {16, anyRate, {0, 0, 2, 1}, true}};

/// What a lane has whose width, or rate at its width, stands in no row.
constexpr widthRow noWidth{0, anyRate, {}, false};

const widthRow& widthsOf(unsigned int internalWidth, double lineRate) {
    const auto* const found =
        std::find_if(std::begin(widthRows), std::end(widthRows), [=](const widthRow& row) {
            return row.internalWidth == internalWidth &&
                   (row.highestRate == anyRate || lineRate <= row.highestRate);
        });
    return found == std::end(widthRows) ? noWidth : *found;
}

/// The loop filter of the recovery.
struct recoveryLoop {
    unsigned int proportionalDivider;
    unsigned int frequencyDivider;
    double proportionalFactor;
    double vote;
};

/// For a reference that is locked to the partner's or only off by some parts per million.
recoveryLoop steadyLoop(double lineRate, double outputDivider) {
    unsigned int frequencyDivider = 128;
    if (lineRate <= 13.0) {
        frequencyDivider = 32;
    } else if (lineRate <= 26.0) {
        frequencyDivider = 64;
    }
    return {256, quotient(frequencyDivider, truncated(outputDivider), "INT_RX_OUTDIV"), 4.0, 1.0};
}

/// Frequency divider under spread spectrum, by ten times the output divider.
struct spreadDividers {
    unsigned int ofOne;
    unsigned int ofFour;
    unsigned int ofEight;
    unsigned int ofSixteen;
    unsigned int ofOther;

    unsigned int of(unsigned int tenfoldOutputDivider) const {
        switch (tenfoldOutputDivider) {
            case 10:
                return ofOne;
            case 40:
                return ofFour;
            case 80:
                return ofEight;
            case 160:
                return ofSixteen;
            default:
                return ofOther;
        }
    }
};

spreadDividers spreadDividersAt(double lineRate) {
    if (lineRate <= 2.5) {
        return {8, 2, 1, 1, 4};
    }
    if (lineRate < 5.0) {
        return {4, 1, 1, 1, 2};
    }
    if (lineRate < 8.0) {
        return {16, 4, 2, 1, 8};
    }
    return {4, 1, 1, 1, 2};
}

unsigned int spreadProportionalDivider(double lineRate) {
    if (lineRate <= 1.62) {
        return 16;
    }
    if (lineRate <= 2.5) {
        return 64;
    }
    if (lineRate < 8.0) {
        return 32;
    }
    return lineRate < 16.0 ? 512 : 1024;
}

/// For a spread spectrum reference that is not the partner's.
recoveryLoop spreadSpectrumLoop(double lineRate, double outputDivider) {
    recoveryLoop loop{spreadProportionalDivider(lineRate),
                      spreadDividersAt(lineRate).of(truncated(outputDivider * 10.0)), 0.25, 2.0};
    if (lineRate < 8.0) {
        loop.proportionalFactor = 4.0;
        loop.vote = 1.0;
    } else if (lineRate < 16.0) {
        loop.proportionalFactor = 0.5;
    }
    return loop;
}

/// The 17 fields.
class recovery_fields {
  public:
    explicit recovery_fields(rule_declaration& rule)
        : overridesAnalogue_(rule.writes("EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN")),
          adaptationWidth_(rule.writes("EYESCAN_CFG16.RXPMA_ADAP_WIDTH_OVRD")),
          recoveryWidth_(rule.writes("EYESCAN_CFG16.RXPMA_CDR_WIDTH_OVRD")),
          deserialiserWidth_(rule.writes("EYESCAN_CFG16.RXPMA_DES_WIDTH_OVRD")),
          followsFrequency_(rule.writes("RX_CDR_CFG0.CDRENF")),
          selectMode_(rule.writes("RX_CDR_CFG0.SELMODE")),
          dataWidth_(rule.writes("RX_CDR_CFG0.DATAWIDTH_OVR")),
          lowLatency_(rule.writes("RX_CDR_CFG0.LOWLATENCY_OVR")),
          selectDY_(rule.writes("RX_CDR_CFG0.D_SEL_Y")),
          selectDP_(rule.writes("RX_CDR_CFG0.D_SEL_P")),
          selectYX_(rule.writes("RX_CDR_CFG0.Y_SEL_X")),
          selectXY_(rule.writes("RX_CDR_CFG0.X_SEL_Y")),
          proportionalDivider_(rule.writes("RX_CDR_CFG2.PDIVFAC")),
          proportionalFactor_(rule.writes("RX_CDR_CFG2.PMULFAC")),
          frequencyDivider_(rule.writes("RX_CDR_CFG2.FDIVFAC")),
          voteX_(rule.writes("RX_CDR_CFG2.VOTEWX")),
          voteY_(rule.writes("RX_CDR_CFG2.VOTEWY")) {}

    void followFrequency(bool follows) const { followsFrequency_.set(follows ? 1 : 0); }

    void setWidths(const recoveryWidths& widths) const {
        overridesAnalogue_.set(widths.overridesAnalogue);
        adaptationWidth_.set(widths.analogueWidth);
        recoveryWidth_.set(widths.analogueWidth);
        deserialiserWidth_.set(widths.analogueWidth);
        selectMode_.set(widths.selectMode);
        lowLatency_.set(widths.selectMode);
        dataWidth_.set(widths.dataWidth);
    }

    void setDecisionInputs(unsigned int byEqualiser) const {
        selectDY_.set(0);
        selectDP_.set(byEqualiser);
        selectYX_.set(0);
        selectXY_.set(byEqualiser);
    }

    void setLoop(const recoveryLoop& loop) const {
        proportionalDivider_.set(proportionalDividerCode(loop.proportionalDivider));
        proportionalFactor_.set(loopFactorCode(loop.proportionalFactor));
        frequencyDivider_.set(frequencyDividerCode(loop.frequencyDivider));
        voteX_.set(loopFactorCode(1.0));
        voteY_.set(loopFactorCode(loop.vote));
    }

  private:
    rule_output<unsigned int> overridesAnalogue_;
    rule_output<unsigned int> adaptationWidth_;
    rule_output<unsigned int> recoveryWidth_;
    rule_output<unsigned int> deserialiserWidth_;
    rule_output<unsigned int> followsFrequency_;
    rule_output<unsigned int> selectMode_;
    rule_output<unsigned int> dataWidth_;
    rule_output<unsigned int> lowLatency_;
    rule_output<unsigned int> selectDY_;
    rule_output<unsigned int> selectDP_;
    rule_output<unsigned int> selectYX_;
    rule_output<unsigned int> selectXY_;
    rule_output<unsigned int> proportionalDivider_;
    rule_output<unsigned int> proportionalFactor_;
    rule_output<unsigned int> frequencyDivider_;
    rule_output<unsigned int> voteX_;
    rule_output<unsigned int> voteY_;
};

const std::vector<pcieRecoveryCase>& pcieCases() {
    static const std::vector<pcieRecoveryCase> cases{{8.0, 32, {12, 1, 2, 1}}};
    return cases;
}

/// The deserialiser is scanned but in the PCIe cases of the recovery.
void scanMode(rule_declaration& rule) {
    const auto pcie = rule.reads<bool>("PCIE_ENABLE");
    const auto revision = rule.reads<std::string>("siliconRev");
    const auto lineRate = rule.reads<double>("RX_LINE_RATE");
    const auto internalWidth = rule.reads<unsigned int>("RX_INT_DATA_WIDTH");
    rule.gives([=] {
        const bool isCase = pcie() && !isEarlySilicon(revision()) &&
                            recoveryCaseOf(pcieCases(), lineRate(), internalWidth()) != nullptr;
        return isCase ? 0U : 1U;
    });
}

}  // namespace

const pcieRecoveryCase* recoveryCaseOf(const std::vector<pcieRecoveryCase>& cases, double lineRate,
                                       unsigned int internalWidth) {
    const auto found = std::find_if(cases.begin(), cases.end(), [=](const pcieRecoveryCase& known) {
        return known.lineRate == lineRate && known.internalWidth == internalWidth;
    });
    return found == cases.end() ? nullptr : &*found;
}

ruleDeclarer clockDataRecovery(const std::vector<pcieRecoveryCase>& cases,
                               pcieRecoverySilicon silicon) {
    return [cases, silicon](rule_declaration& rule) {
        const auto lineRate = rule.reads<double>("RX_LINE_RATE");
        const auto outputDivider = rule.reads<double>("INT_RX_OUTDIV");
        const auto internalWidth = rule.reads<unsigned int>("RX_INT_DATA_WIDTH");
        const auto equaliser = rule.reads<std::string>("INT_RX_EQ_MODE");
        const auto spread = rule.reads<unsigned int>("RX_SSC_PPM");
        const auto offset = rule.reads<unsigned int>("RX_PPM_OFFSET");
        const auto pcie = rule.reads<bool>("PCIE_ENABLE");
        std::optional<rule_input<std::string>> revision;
        if (silicon == pcieRecoverySilicon::later) {
            revision = rule.reads<std::string>("siliconRev");
        }
        const recovery_fields fields(rule);
        rule.body([=] {
            fields.followFrequency(offset() != 0);

            const recoveryLoop steady = steadyLoop(lineRate(), outputDivider());
            fields.setLoop(spread() != 0 && offset() != 0
                               ? spreadSpectrumLoop(lineRate(), outputDivider())
                               : steady);

            const widthRow& row = widthsOf(internalWidth(), lineRate());
            fields.setDecisionInputs(row.selectsByEqualiser && equaliser() == "LPM" ? 1 : 0);

            const bool mayOverride = pcie() && !(revision && isEarlySilicon((*revision)()));
            const pcieRecoveryCase* const special =
                mayOverride ? recoveryCaseOf(cases, lineRate(), internalWidth()) : nullptr;
            fields.setWidths(special == nullptr ? row.widths : special->widths);
        });
    };
}

unsigned int proportionalDividerCode(unsigned int divider) {
    return codeOf(proportionalDividers, divider);
}

unsigned int frequencyDividerCode(unsigned int divider) {
    return codeOf(frequencyDividers, divider);
}

unsigned int loopFactorCode(double factor) {
    return codeOf(factors, factor);
}

void addRxRecoveryRules(logicRules& rules) {
    rules["EYESCAN_CFG16.RXPMA_WIDTH_OVRD_EN"] =
        clockDataRecovery(pcieCases(), pcieRecoverySilicon::later);
    rules["RX_CTLE_CFG1.CDR2APT_SCANMODE1"] = scanMode;
    rules["RX_CTLE_CFG1.RCAL_OS_PAD"] = bySilicon(0, 8);
}

}  // namespace sable_lanecfg
