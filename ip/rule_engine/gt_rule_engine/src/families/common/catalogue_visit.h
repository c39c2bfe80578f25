#pragma once

#include "families/common/register_catalogue.h"

#include <string>

namespace sable_lanecfg {

template <class Visitor>
void visitField(const std::string& name, const registerField& field, Visitor& visitor) {
    switch (field.kind) {
        case fieldKind::constant:
            visitor.constant(name, field.value);
            break;
        case fieldKind::copy:
            visitor.copy(name, std::string(field.source));
            break;
        case fieldKind::logic:
            visitor.logic(name, name);
            break;
        case fieldKind::shared:
            visitor.shared(name);
            break;
    }
}

/// Walks the rules of a catalogue in the order of registration. The visitor has
///
///     constant(variable, value), copy(field, flag),
///     word(register, fields)  right after the visit of these fields
///     wordOfParts(register, fields)   the word of fields that stand in earlier entries
///     logic(rule, ownField)   the rule beside the catalogue; ownField is empty for a step
///     shared(field)           a field that another rule writes
template <class Visitor>
void visitRules(const register_catalogue& catalogue, Visitor& visitor) {
    // Two texts for all names, so that the walk allocates none for each.
    std::string name;
    std::string nameOfField;
    for (const catalogueEntry& entry : catalogue.entries()) {
        name = entry.name;
        for (const registerField& field : entry.fields) {
            nameOfField.assign(name).append(1, '.').append(field.name);
            visitField(nameOfField, field, visitor);
        }
        switch (entry.kind) {
            case entryKind::wholeRegister:
                visitor.word(name, entry.fields);
                break;
            case entryKind::word:
                visitor.wordOfParts(name, catalogue.fieldsOf(name));
                break;
            case entryKind::constantWord:
                visitor.constant(name, entry.value);
                break;
            case entryKind::step:
                visitor.logic(name, std::string());
                break;
            case entryKind::fields:
                break;
        }
    }
}

}  // namespace sable_lanecfg
