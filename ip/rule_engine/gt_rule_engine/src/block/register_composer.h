#pragma once

#include "block/register_word.h"

#include <lanecfg/gt_rule_engine.h>

#include <string>
#include <vector>

namespace sable_lanecfg {

/// Composes one register word again and again, as `gt_rule_engine::generateRegister` does, with
/// nothing looked up after the first time.
///
/// For the bodies of compose rules. The register's layout is taken and its fields' variables are
/// found at first use, so a composer may be made before either exists. It holds the engine's own
/// variables: neither they nor the layout may be removed while it is in use.
class register_composer {
  public:
    /// `fields` are those of which it is known what rules refer to, in ascending order of name;
    /// others are looked up.
    register_composer(gt_rule_engine& engine, std::string registerName,
                      std::vector<ruleVariable*> fields = {});

    /// The word from the fields' present values, with the failures of `generateRegister`.
    unsigned int word();

  private:
    struct heldField {
        const std::string* name;
        fieldPlace place;
        const ruleValue* value;  ///< null until the field is first read
    };

    void takeLayout();

    gt_rule_engine* engine_;
    std::string registerName_;
    std::vector<ruleVariable*> known_;  ///< of no more use when the layout is taken
    bool layoutTaken_ = false;
    std::vector<heldField> fields_;
};

}  // namespace sable_lanecfg
