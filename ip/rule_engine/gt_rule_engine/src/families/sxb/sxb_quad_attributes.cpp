#include "families/sxb/sxb_quad_attributes.h"

#include <lanecfg/rule_engine_utilities.h>

#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {

namespace {

constexpr std::array<const char*, 2> plls{"LCPLL", "RPLL"};

/// Fields of a reference clock word without PLL, and under which names they are reported.
struct referenceField {
    const char* field;
    const char* reported;
};

// Hosts know the maps by names that end with a blank.
constexpr std::array<referenceField, 10> referenceFields{{{"IPS_REFCLK_SEL", "IPS_REFCLK_SEL"},
                                                          {"IPS_PIN_EN", "IPS_PIN_EN"},
                                                          {"REFCLK_MAP7", "REFCLK_MAP7 "},
                                                          {"REFCLK_MAP6", "REFCLK_MAP6 "},
                                                          {"REFCLK_MAP5", "REFCLK_MAP5 "},
                                                          {"REFCLK_MAP4", "REFCLK_MAP4 "},
                                                          {"REFCLK_MAP3", "REFCLK_MAP3 "},
                                                          {"REFCLK_MAP2", "REFCLK_MAP2 "},
                                                          {"REFCLK_MAP1", "REFCLK_MAP1 "},
                                                          {"REFCLK_MAP0", "REFCLK_MAP0 "}}};

/// Word that holds fraction and power of one PLL of one dual.
struct pllWord {
    const char* name;
    std::size_t dual;
    const char* pll;
};

constexpr std::array<pllWord, 4> pllWords{
    {{"A_CFG2", 0, "LCPLL"}, {"A_CFG3", 0, "RPLL"}, {"A_CFG4", 1, "LCPLL"}, {"A_CFG5", 1, "RPLL"}}};

/// A lane in its pass of rate 0 in both directions. Without such a pass nothing has a value.
class first_pass {
  public:
    explicit first_pass(const std::vector<variableMap>& passes) {
        for (const variableMap& pass : passes) {
            if (textIn(pass, "TX") == "0" && textIn(pass, "RX") == "0") {
                pass_ = &pass;
            }
        }
    }

    /// Whether the lane runs on a PLL, for its data or its programmable divider.
    bool uses(const std::string& pll) const { return uses("TX", pll) || uses("RX", pll); }

    unsigned int number(const std::string& name) const {
        return rule_engine_utilities::getInt(text(name));
    }

  private:
    static std::string textIn(const variableMap& pass, const std::string& name) {
        const auto found = pass.find(name);
        return found == pass.end() ? std::string() : rule_engine_base::textOf(found->second.value);
    }

    std::string text(const std::string& name) const {
        return pass_ == nullptr ? std::string() : textIn(*pass_, name);
    }

    bool flag(const std::string& name) const {
        return rule_engine_utilities::stringToBool(text(name));
    }

    bool uses(const std::string& side, const std::string& pll) const {
        const bool dividerUses =
            flag(side + "PROGDIV_FREQ_ENABLE") && text(side + "PROGDIV_FREQ_SOURCE") == pll;
        return flag(side + "_IN_USE") && (text(side + "_PLL_TYPE") == pll || dividerUses);
    }

    const variableMap* pass_ = nullptr;
};

/// Puts the words of a quad together.
class quad_words {
  public:
    quad_words(gt_rule_engine& engine, quadWordLayout layout)
        : engine_(engine), layout_(std::move(layout)), attributes_(engine.getAttribMap()) {
        lanes_.reserve(engine.blockVarMap.size());
        for (const auto& passes : engine.blockVarMap) {
            lanes_.emplace_back(passes);
        }
        // Choices ask for lanes of both duals, whether or not the rules have run for them.
        static const std::vector<variableMap> noPasses;
        while (lanes_.size() < lanesOfQuad) {
            lanes_.emplace_back(noPasses);
        }
    }

    std::map<std::string, std::string> finished() {
        enterPllWords();
        enterReferenceWords();
        enterResetWords();
        if (layout_.listsStaticRegisters) {
            report("STAT_NPI_REG_LIST", engine_.statNpiRegList);
        }
        reportRest();
        return std::move(attributes_);
    }

  private:
    static constexpr std::size_t lanesOfQuad = 4;
    static constexpr std::size_t duals = 2;

    /// The lane that configures a PLL of a dual.
    const first_pass& configuring(std::size_t dual, const std::string& pll) const {
        const first_pass& first = lanes_[2 * dual];
        const first_pass& second = lanes_[2 * dual + 1];
        const bool isSecond = layout_.asksWhoUsesPlls && !first.uses(pll) && second.uses(pll);
        return isSecond ? second : first;
    }

    void report(const std::string& name, const std::string& text) {
        attributes_[engine_.attributePrefix + name] = text;
    }

    void enterAndReport(const std::string& name, unsigned int value) {
        engine_.setVal(name, value);
        report(name, std::to_string(value));
    }

    void compose(const std::string& name) { enterAndReport(name, engine_.generateRegister(name)); }

    /// Composes the words of the rows, each once.
    template <class Rows, class NameOf>
    void composeEach(const Rows& rows, const NameOf& nameOf) {
        std::set<std::string> composed;
        for (const auto& row : rows) {
            if (composed.insert(nameOf(row)).second) {
                compose(nameOf(row));
            }
        }
    }

    void enterPllWords() {
        for (std::size_t dual = 0; dual < duals; ++dual) {
            for (const std::string pll : plls) {
                const std::string field =
                    "A_CFG1.A_HS" + std::to_string(dual) + "_" + pll + "FBDIV";
                engine_.setVal(field, configuring(dual, pll).number(field));
            }
        }
        compose("A_CFG1");
        for (const pllWord& word : pllWords) {
            enterAndReport(word.name, configuring(word.dual, word.pll).number(word.name));
        }
    }

    /// Of a word that both duals have, the fields of the dual that is entered last stand.
    void enterReferenceWords() {
        for (const referenceWord& word : layout_.referenceWords) {
            enterReferenceFields(word);
        }
        composeEach(layout_.referenceWords, [](const referenceWord& word) { return word.name; });
    }

    void enterReferenceFields(const referenceWord& word) {
        const first_pass& lane = configuring(word.dual, word.pll);
        const std::string reported = "HS" + std::to_string(word.dual) + "_" + word.pll + "_";
        for (const referenceField& field : referenceFields) {
            const std::string name = std::string(word.name) + "." + word.fieldPrefix + field.field;
            const unsigned int value = lane.number(name);
            engine_.setVal(name, value);
            enterAndReport(reported + field.reported, value);
        }
    }

    void enterResetWords() {
        for (std::size_t lane = 0; lane < lanesOfQuad; ++lane) {
            const std::string channel = "CH" + std::to_string(lane);
            for (const laneField& field : layout_.laneFields) {
                enterOwnField(lane, std::string(field.registerName) + "." + channel + field.ending);
            }
        }
        composeEach(layout_.laneFields, [](const laneField& field) { return field.registerName; });
    }

    void enterOwnField(std::size_t lane, const std::string& name) {
        engine_.setVal(name, lanes_[lane].number(name));
    }

    void reportRest() {
        for (const auto& [name, info] : engine_.attributes) {
            const variable* const held = engine_.findVariable(name);
            if (held != nullptr && held->second.value.which() != 0) {
                attributes_.emplace(engine_.attributePrefix + name,
                                    rule_engine_base::textOf(held->second.value));
            }
        }
    }

    gt_rule_engine& engine_;
    quadWordLayout layout_;
    std::map<std::string, std::string> attributes_;
    std::vector<first_pass> lanes_;
};

}  // namespace

quadWordLayout currentQuadWords() {
    quadWordLayout layout;
    layout.referenceWords = {{"LCPLL_REFCLK_IPS", "LCPLL_", 0, "LCPLL"},
                             {"RPLL_REFCLK_IPS", "RPLL_", 0, "RPLL"},
                             {"LCPLL_REFCLK_IPS", "LCPLL_", 1, "LCPLL"},
                             {"RPLL_REFCLK_IPS", "RPLL_", 1, "RPLL"}};
    layout.laneFields = {
        {"MST_RESET_CFG", "_LCPLL_RESET_EN"},  {"MST_RESET_CFG", "_RPLL_RESET_EN"},
        {"MST_RESET_CFG", "_ILO_RESET_EN"},    {"MST_RESET_CFG", "_TX_PROGDIV_RESET_EN"},
        {"MST_RESET_CFG", "_TX_CH_RESET_EN"},  {"MST_RESET_CFG", "_RX_PROGDIV_RESET_EN"},
        {"MST_RESET_CFG", "_RX_CH_RESET_EN"},  {"MST_RESET_CFG", "_RX_LCPLL_RESET_EN"},
        {"CTRL_RSV_CFG0", "_RX_RPLL_RESET_EN"}};
    return layout;
}

std::map<std::string, std::string> quadAttributes(gt_rule_engine& engine,
                                                  const quadWordLayout& layout) {
    engine.generateRateTable(true);
    return quad_words(engine, layout).finished();
}

}  // namespace sable_lanecfg
