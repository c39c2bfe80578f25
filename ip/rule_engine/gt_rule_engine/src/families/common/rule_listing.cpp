#include "families/common/rule_listing.h"

#include "families/common/catalogue_visit.h"

#include <utility>

namespace sable_lanecfg {

namespace {

/// Describes what it visits.
class rule_listing {
  public:
    rule_listing(const std::string& set, const logicRules& rules) : set_(set), rules_(rules) {}

    void constant(const std::string& name, unsigned int value) {
        add(ruleKind::constant, {}, {name}, value);
    }

    void copy(const std::string& field, const std::string& flag) {
        add(ruleKind::copy, {flag}, {field});
    }

    void logic(const std::string& rule, const std::string& ownField) {
        rule_declaration declaration(nullptr, ownField);
        ruleBeside(rules_, rule)(declaration);
        ruleSignature names = declaration.signature();
        add(ruleKind::logic, std::move(names.inputs), std::move(names.outputs));
    }

    void shared(const std::string& /*field*/) {}

    void word(const std::string& registerName, const std::vector<registerField>& fields) {
        add(ruleKind::compose, fieldNames(registerName, fields), {registerName});
    }

    void wordOfParts(const std::string& registerName, const std::vector<registerField>& fields) {
        word(registerName, fields);
    }

    std::vector<ruleDescription> take() { return std::move(described_); }

  private:
    void add(ruleKind kind, std::vector<std::string> inputs, std::vector<std::string> outputs,
             unsigned int value = 0) {
        described_.push_back({set_, kind, std::move(inputs), std::move(outputs), value});
    }

    const std::string& set_;
    const logicRules& rules_;
    std::vector<ruleDescription> described_;
};

}  // namespace

std::vector<ruleDescription> describeCatalogue(const std::string& set,
                                               const register_catalogue& catalogue,
                                               const logicRules& rules) {
    rule_listing listing(set, rules);
    visitRules(catalogue, listing);
    return listing.take();
}

}  // namespace sable_lanecfg
