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

void register_composer::takeLayout() {
    // An unknown register enters the database without fields, as it does by name.
    const auto& layout = engine_->attributes[registerName_].fields;
    fields_.reserve(layout.size());
    // Both have their names in order, so the next one known is mostly the next field.
    auto known = known_.begin();
    for (const auto& [name, offsetAndWidth] : layout) {
        while (known != known_.end() && (*known)->variableName().compare(name) < 0) {
            ++known;
        }
        const ruleValue* value = nullptr;
        if (known != known_.end() && (*known)->held != nullptr && (*known)->held->first == name) {
            value = &(*known)->held->second.value;
        }
        fields_.push_back({&name, placeOfField(offsetAndWidth), value});
    }
    layoutTaken_ = true;
}

}  // namespace sable_lanecfg
