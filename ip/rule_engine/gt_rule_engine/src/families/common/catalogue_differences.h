#pragma once

#include "families/common/register_catalogue.h"

#include <string_view>

namespace sable_lanecfg {

// Differences between a catalogue and one that is made from it, as tables with a row for each rule:
//
//     constexpr changedConstant changedConstants[] = {
//         {"HSDIST_CFG", "HSDIST_CTRL", 6, 0},
//     };
//
// A row that does not fit the catalogue throws std::invalid_argument that names it, so neither a
// slip in a table nor a later change of the catalogue passes unseen.

/// A field that goes. Without a name of a field it is the register's word, of which no field is
/// left, or a step.
struct removedRule {
    std::string_view name;
    std::string_view field;
};

/// A field that comes, or that takes the place of the one of its name.
struct fieldOfRegister {
    std::string_view registerName;
    registerField field;
};

struct changedConstant {
    std::string_view registerName;
    std::string_view field;
    unsigned int before;
    unsigned int after;
};

/// A word that no field is left of, and that has one value from now on.
struct emptiedWord {
    std::string_view registerName;
    unsigned int value;
};

void applyDifference(register_catalogue& catalogue, const removedRule& row);
void applyDifference(register_catalogue& catalogue, const changedConstant& row);
void applyDifference(register_catalogue& catalogue, const emptiedWord& row);

/// Applies the rows of a table in their order.
template <class Rows>
void applyDifferences(register_catalogue& catalogue, const Rows& rows) {
    for (const auto& row : rows) {
        applyDifference(catalogue, row);
    }
}

/// Adds each row's field behind the fields that its register has by then.
template <class Rows>
void addFields(register_catalogue& catalogue, const Rows& rows) {
    for (const fieldOfRegister& row : rows) {
        catalogue.addField(row.registerName, row.field);
    }
}

/// Puts each row's field in the place of the register's field of its name.
template <class Rows>
void replaceFields(register_catalogue& catalogue, const Rows& rows) {
    for (const fieldOfRegister& row : rows) {
        catalogue.replaceField(row.registerName, row.field);
    }
}

}  // namespace sable_lanecfg
