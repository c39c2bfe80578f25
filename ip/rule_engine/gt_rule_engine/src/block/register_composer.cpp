#include "block/register_composer.h"

#include <algorithm>
#include <utility>

namespace sable_lanecfg {

register_composer::register_composer(gt_rule_engine& engine, std::string registerName,
                                     std::vector<ruleVariable*> fields)
    : engine_(&engine), registerName_(std::move(registerName)), known_(std::move(fields)) {}

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

const ruleValue* register_composer::takeKnownValue(const std::string& field) {
    const auto found =
        std::find_if(known_.begin(), known_.end(), [&field](const ruleVariable* known) {
            return known->held != nullptr && known->held->first == field;
        });
    if (found == known_.end()) {
        return nullptr;
    }
    const ruleValue& value = (*found)->held->second.value;
    // No other field of the layout has that name, so the next search is shorter.
    *found = known_.back();
    known_.pop_back();
    return &value;
}

void register_composer::takeLayout() {
    // An unknown register enters the database without fields, as it does by name.
    const auto& layout = engine_->attributes[registerName_].fields;
    fields_.reserve(layout.size());
    for (const auto& [name, offsetAndWidth] : layout) {
        fields_.push_back({&name, placeOfField(offsetAndWidth), takeKnownValue(name)});
    }
    layoutTaken_ = true;
}

}  // namespace sable_lanecfg
