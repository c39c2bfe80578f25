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
    register_composer(gt_rule_engine& engine, std::string registerName);

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
    bool layoutTaken_ = false;
    std::vector<heldField> fields_;
};

}  // namespace sable_lanecfg
