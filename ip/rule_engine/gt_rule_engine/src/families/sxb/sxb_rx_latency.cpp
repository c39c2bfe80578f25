#include "families/sxb/sxb_rx_rule_groups.h"

#include <algorithm>
#include <string>
#include <utility>

namespace sable_lanecfg {

namespace {

/// Latency of a buffer that nothing corrects or bonds.
constexpr unsigned int idleLatency = 18;

/// A buffer of an asynchronous coding; the word has to begin so, and a line break ends it.
bool isAsynchronous(const std::string& coding) {
    const std::string begin = "ASYNC";
    return coding.compare(0, begin.size(), begin) == 0 &&
           coding.find_first_of("\n\r", begin.size()) == std::string::npos;
}

unsigned int roundedUp(unsigned int number, unsigned int step) {
    return number + (step - number % step) % step;
}

/// What the latency of the elastic buffer depends on; all lengths are in bytes.
class minimum_latency {
  public:
    explicit minimum_latency(rule_declaration& rule)
        : width_(rule.reads<unsigned int>("INT_WID")),
          skew_(rule.reads<unsigned int>("RX_CB_MAX_SKEW")),
          level_(rule.reads<unsigned int>("RX_CB_MAX_LEVEL")),
          plainLatency_(rule.reads<unsigned int>("INT_UND_NO_CC_CB")),
          bonds_(rule.reads<unsigned int>("RX_CB_NUM_SEQ")),
          corrections_(rule.reads<unsigned int>("RX_CC_NUM_SEQ")),
          offset_(rule.reads<unsigned int>("RX_PPM_OFFSET")),
          periodicity_(rule.reads<unsigned int>("RX_CC_PERIODICITY")),
          commaWord_(rule.reads<unsigned int>("RX_COMMA_ALIGN_WORD")),
          pcie_(rule.reads<bool>("PCIE_ENABLE")),
          referenceMode_(rule.reads<unsigned int>("INT_PHY_REFCLK_MODE")),
          bufferMode_(rule.reads<unsigned int>("RX_BUFFER_MODE")),
          coding_(rule.reads<std::string>("RX_DATA_DECODING")) {}

    unsigned int operator()() const {
        if (pcie_()) {
            return ofPcie();
        }
        if (bufferMode_() == 0 || isAsynchronous(coding_())) {
            return idleLatency;
        }
        return aligned(ofSequences());
    }

  private:
    unsigned int ofPcie() const {
        switch (referenceMode_()) {
            case 1:
                return 17;
            case 2:
                return 22;
            default:
                return 10;
        }
    }

    /// Bytes that the buffer holds before it corrects.
    unsigned int base() const {
        if (bonds_() != 0) {
            return (level_() + 5) * width_() - 2;
        }
        return corrections_() != 0 ? 5 * width_() - 2 : plainLatency_();
    }

    /// Bytes that drift in between two corrections, in whole words.
    unsigned int drift() const {
        constexpr unsigned int mostWords = 9;
        if (corrections_() == 0) {
            return width_();
        }
        const auto wholeOffset = offset_() / 1000000;
        const double least = wholeOffset * periodicity_() + 0.2;
        unsigned int words = 1;
        while (words < mostWords && !(words * width_() > least)) {
            ++words;
        }
        return words * width_();
    }

    unsigned int ofSequences() const {
        const unsigned int plain = drift() + base() + 1;
        const bool holdsSkew = bonds_() != 0 || (corrections_() != 0 && drift() > width_());
        return holdsSkew ? std::max(skew_() + 4 * width_() + drift(), plain) : plain;
    }

    /// Commas are only looked for at every second or fourth byte.
    unsigned int aligned(unsigned int latency) const {
        const unsigned int word = commaWord_();
        return word == 2 || word == 4 ? roundedUp(latency, word) : latency;
    }

    rule_input<unsigned int> width_;
    rule_input<unsigned int> skew_;
    rule_input<unsigned int> level_;
    rule_input<unsigned int> plainLatency_;
    rule_input<unsigned int> bonds_;
    rule_input<unsigned int> corrections_;
    rule_input<unsigned int> offset_;
    rule_input<unsigned int> periodicity_;
    rule_input<unsigned int> commaWord_;
    rule_input<bool> pcie_;
    rule_input<unsigned int> referenceMode_;
    rule_input<unsigned int> bufferMode_;
    rule_input<std::string> coding_;
};

void minimumLatency(rule_declaration& rule) {
    const minimum_latency latency(rule);
    rule.gives(latency);
}

latencyReserve ofCorrectedBytes(rule_declaration& rule) {
    const auto corrections = rule.reads<unsigned int>("RX_CC_NUM_SEQ");
    const auto bytes = rule.reads<unsigned int>("INT_WID");
    return {corrections, bytes};
}

}  // namespace

ruleDeclarer maximumBufferLatency(std::function<latencyReserve(rule_declaration&)> readReserve) {
    return [readReserve = std::move(readReserve)](rule_declaration& rule) {
        const auto minimum =
            rule.reads<unsigned int>("RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT");
        const auto correctionLength = rule.reads<unsigned int>("RX_CC_LEN_SEQ");
        const latencyReserve reserve = readReserve(rule);
        const auto pcie = rule.reads<bool>("PCIE_ENABLE");
        const auto mode = rule.reads<unsigned int>("INT_PHY_REFCLK_MODE");
        // An asynchronous coding has its latency in the minimum already.
        rule.alsoDeclares("RX_BUFFER_MODE");
        rule.alsoDeclares("RX_DATA_DECODING");
        rule.gives([=] {
            if (pcie()) {
                return mode() == 2 ? 28U : 20U;
            }
            return minimum() + reserve.width() +
                   (reserve.corrections() != 0 ? correctionLength() : 0);
        });
    };
}

void addRxLatencyRules(logicRules& rules) {
    rules["RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MIN_LAT"] = minimumLatency;
    rules["RX_ELASTIC_BUF_CFG0.EB8B10B_CLK_COR_MAX_LAT"] = maximumBufferLatency(ofCorrectedBytes);
}

}  // namespace sable_lanecfg
