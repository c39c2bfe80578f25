#include "block/register_composer.h"

#include <utility>

namespace sable_lanecfg {

register_composer::register_composer(gt_rule_engine& engine, std::string registerName)
    : engine_(&engine), registerName_(std::move(registerName)) {}

unsigned int register_composer::word() {
    if (!layoutTaken_) {
        takeLayout();
    }
    unsigned int word = 0;
    for (heldField& field : fields_) {
        if (field.value == nullptr) {
            // An absent field becomes a blank variable, which the read then refuses.
            field.value = &engine_->varMap[*field.name].value;
        }
        word = wordWithField(word, field.place, boost::get<unsigned int>(*field.value));
    }
    return word;
}

void register_composer::takeLayout() {
    // An unknown register enters the database without fields, as it does by name.
    for (const auto& [name, offsetAndWidth] : engine_->attributes[registerName_].fields) {
        fields_.push_back({&name, placeOfField(offsetAndWidth), nullptr});
    }
    layoutTaken_ = true;
}

}  // namespace sable_lanecfg
