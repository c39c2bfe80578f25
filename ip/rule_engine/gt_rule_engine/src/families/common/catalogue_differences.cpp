#include "families/common/catalogue_differences.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace sable_lanecfg {

namespace {

void refuseFieldsIn(const register_catalogue& catalogue, std::string_view registerName) {
    const std::vector<registerField> left = catalogue.fieldsOf(registerName);
    if (!left.empty()) {
        throw std::invalid_argument("register catalogue: there is still a field " +
                                    fieldName(registerName, left.front().name));
    }
}

}  // namespace

void applyDifference(register_catalogue& catalogue, const removedRule& row) {
    if (row.field.empty()) {
        refuseFieldsIn(catalogue, row.name);
        catalogue.remove(row.name);
    } else {
        catalogue.removeField(row.name, row.field);
    }
}

void applyDifference(register_catalogue& catalogue, const changedConstant& row) {
    const std::vector<registerField> fields = catalogue.fieldsOf(row.registerName);
    const auto present =
        std::find_if(fields.begin(), fields.end(),
                     [&row](const registerField& field) { return field.name == row.field; });
    if (present != fields.end() && present->value != row.before) {
        throw std::invalid_argument(
            "register catalogue: " + fieldName(row.registerName, row.field) + " is " +
            std::to_string(present->value) + " and not " + std::to_string(row.before));
    }
    catalogue.setConstant(row.registerName, row.field, row.after);
}

void applyDifference(register_catalogue& catalogue, const emptiedWord& row) {
    refuseFieldsIn(catalogue, row.registerName);
    catalogue.replace(constantWord(row.registerName, row.value));
}

}  // namespace sable_lanecfg
