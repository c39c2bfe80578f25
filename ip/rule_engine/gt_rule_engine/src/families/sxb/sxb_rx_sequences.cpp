#include "families/sxb/sxb_binary_text.h"
#include "families/sxb/sxb_rx_rule_groups.h"

#include <array>
#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

/// The clock correction sequences, or those of channel bonding.
struct sequenceKind {
    std::string parameters;  ///< begin of the parameter names
    std::string fields;      ///< begin of the field names
    /// Register of each element, by sequence and place.
    std::array<std::array<const char*, 4>, 2> elementRegisters;
    std::array<const char*, 2> enableRegisters;
};

const sequenceKind& clockCorrection() {
    static const sequenceKind kind{"RX_CC_",
                                   "EB8B10B_CLK_COR_SEQ_",
                                   {{{"RX_ELASTIC_BUF_CFG1", "RX_ELASTIC_BUF_CFG1",
                                      "RX_ELASTIC_BUF_CFG1", "RX_ELASTIC_BUF_CFG2"},
                                     {"RX_ELASTIC_BUF_CFG2", "RX_ELASTIC_BUF_CFG2",
                                      "RX_ELASTIC_BUF_CFG3", "RX_ELASTIC_BUF_CFG3"}}},
                                   {"RX_ELASTIC_BUF_CFG3", "RX_ELASTIC_BUF_CFG3"}};
    return kind;
}

const sequenceKind& channelBonding() {
    static const sequenceKind kind{"RX_CB_",
                                   "EB8B10B_CHAN_BOND_SEQ_",
                                   {{{"RX_ELASTIC_BUF_CFG4", "RX_ELASTIC_BUF_CFG4",
                                      "RX_ELASTIC_BUF_CFG4", "RX_ELASTIC_BUF_CFG5"},
                                     {"RX_ELASTIC_BUF_CFG5", "RX_ELASTIC_BUF_CFG5",
                                      "RX_ELASTIC_BUF_CFG6", "RX_ELASTIC_BUF_CFG6"}}},
                                   {"RX_ELASTIC_BUF_CFG6", "RX_ELASTIC_BUF_CFG6"}};
    return kind;
}

/// Names of what one element of a sequence is made of.
struct sequenceElement {
    std::string value;
    std::string control;
    std::string disparity;
    /// What the rule declares in place of the disparity that it reads; empty when it is the same.
    std::string declaredDisparity;
    std::string sequenceCount;
    unsigned int sequence;  ///< from 0
};

class element_digits {
  public:
    element_digits(rule_declaration& rule, const sequenceElement& element)
        : value_(rule.reads<std::string>(element.value)),
          control_(rule.reads<bool>(element.control)),
          disparity_(declaredDisparity(rule, element)),
          sequenceCount_(rule.reads<unsigned int>(element.sequenceCount)),
          coding_(rule.reads<std::string>("RX_DATA_DECODING")),
          internalWidth_(rule.reads<unsigned int>("RX_INT_DATA_WIDTH")),
          sequence_(element.sequence) {}

    unsigned int operator()() const {
        if (sequenceCount_() <= sequence_) {
            return 0;
        }
        if (coding_() == "8B10B") {
            const std::string prefix{disparity_() ? '1' : '0', control_() ? '1' : '0'};
            return leadingBinaryNumber(prefix + value_());
        }
        const bool plainBytes = internalWidth_() == 16 || internalWidth_() == 32;
        return plainBytes ? leadingBinaryNumber("00" + value_()) : 0;
    }

  private:
    static rule_peek<bool> declaredDisparity(rule_declaration& rule,
                                             const sequenceElement& element) {
        rule.alsoDeclares(element.declaredDisparity.empty() ? element.disparity
                                                            : element.declaredDisparity);
        return rule.peeks<bool>(element.disparity);
    }

    rule_input<std::string> value_;
    rule_input<bool> control_;
    rule_peek<bool> disparity_;
    rule_input<unsigned int> sequenceCount_;
    rule_input<std::string> coding_;
    rule_input<unsigned int> internalWidth_;
    unsigned int sequence_;
};

ruleDeclarer sequenceElementRule(const sequenceElement& element) {
    return [element](rule_declaration& rule) { rule.gives(element_digits(rule, element)); };
}

/// One bit for each element of a sequence that no mask hides.
ruleDeclarer elementEnables(const std::string& maskNames) {
    return [maskNames](rule_declaration& rule) {
        std::vector<rule_input<bool>> masks;
        for (unsigned int place = 0; place < 4; ++place) {
            masks.push_back(rule.reads<bool>(maskNames + std::to_string(place)));
        }
        rule.gives([masks] {
            unsigned int enables = 0;
            for (std::size_t place = 0; place < masks.size(); ++place) {
                enables |= masks[place]() ? 0U : 1U << place;
            }
            return enables;
        });
    };
}

/// "1_2" for the third element of the second sequence, as parameters count.
std::string indices(unsigned int sequence, unsigned int place) {
    return std::to_string(sequence) + "_" + std::to_string(place);
}

sequenceElement elementOf(const sequenceKind& kind, unsigned int sequence, unsigned int place) {
    const std::string suffix = indices(sequence, place);
    return {kind.parameters + "VAL_" + suffix,  kind.parameters + "K_" + suffix,
            kind.parameters + "DISP_" + suffix, {},
            kind.parameters + "NUM_SEQ",        sequence};
}

void addElement(logicRules& rules, const sequenceKind& kind, const sequenceElement& element,
                unsigned int place) {
    const std::string field = std::string(kind.elementRegisters[element.sequence][place]) + "." +
                              kind.fields + indices(element.sequence + 1, place + 1);
    rules[field] = sequenceElementRule(element);
}

void addEnables(logicRules& rules, const sequenceKind& kind) {
    for (unsigned int sequence = 0; sequence < 2; ++sequence) {
        const std::string field = std::string(kind.enableRegisters[sequence]) + "." + kind.fields +
                                  std::to_string(sequence + 1) + "_EN";
        rules[field] = elementEnables(kind.parameters + "MASK_" + std::to_string(sequence) + "_");
    }
}

/// The second bonding sequence has no disparities of its own but those of the second correction
/// sequence. Its inner elements declare the names that they do not read.
sequenceElement secondBond(unsigned int place) {
    sequenceElement element = elementOf(channelBonding(), 1, place);
    const bool isInner = place == 1 || place == 2;
    element.declaredDisparity = isInner ? element.disparity : "";
    element.disparity = elementOf(clockCorrection(), 1, place).disparity;
    return element;
}

}  // namespace

void addRxSequenceRules(logicRules& rules) {
    for (unsigned int place = 0; place < 4; ++place) {
        addElement(rules, clockCorrection(), elementOf(clockCorrection(), 0, place), place);
        addElement(rules, clockCorrection(), elementOf(clockCorrection(), 1, place), place);
        addElement(rules, channelBonding(), elementOf(channelBonding(), 0, place), place);
        addElement(rules, channelBonding(), secondBond(place), place);
    }
    addEnables(rules, clockCorrection());
    addEnables(rules, channelBonding());
}

}  // namespace sable_lanecfg
