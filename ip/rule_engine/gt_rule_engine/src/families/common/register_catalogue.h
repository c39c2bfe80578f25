#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace sable_lanecfg {

/// Where the value of a register field comes from.
enum class fieldKind {
    constant,  ///< the same value in every configuration
    copy,      ///< 1 or 0, as a flag is set or not
    logic,     ///< a rule beside the catalogue, registered where the field stands
    shared     ///< one of several outputs of a rule that is registered at a place of its own
};

/// One field of a register. Catalogues are tables of literals: the texts are views and have to
/// outlive every catalogue.
struct registerField {
    std::string_view name;  ///< without the register's name
    fieldKind kind = fieldKind::constant;
    unsigned int value = 0;   ///< of a constant
    std::string_view source;  ///< the flag of a copy, the writing rule of a shared field
};

constexpr registerField constant(std::string_view name, unsigned int value) {
    return {name, fieldKind::constant, value, {}};
}

constexpr registerField copy(std::string_view name, std::string_view flag) {
    return {name, fieldKind::copy, 0, flag};
}

constexpr registerField logic(std::string_view name) {
    return {name, fieldKind::logic, 0, {}};
}

/// `rule` is the name of a step, or "REGISTER.FIELD" of a logic field whose rule writes this one
/// too.
constexpr registerField shared(std::string_view name, std::string_view rule) {
    return {name, fieldKind::shared, 0, rule};
}

/// What an entry of a catalogue registers.
enum class entryKind {
    wholeRegister,  ///< its fields, then the rule that composes the word
    fields,         ///< its fields; a later entry composes the word
    word,           ///< the word of a register whose fields stand in earlier entries
    constantWord,   ///< a word without fields
    step            ///< a rule beside the catalogue that belongs to no single field
};

/// One entry of a catalogue. The plain form `{"HSDIST_CFG", {constant("HSDIST_CTRL", 6), ...}}` is
/// a whole register.
struct catalogueEntry {
    std::string_view name;  ///< of the register, or of the step
    std::vector<registerField> fields = {};
    entryKind kind = entryKind::wholeRegister;
    unsigned int value = 0;  ///< of a constant word
};

inline catalogueEntry fieldsOnly(std::string_view name, std::vector<registerField> fields) {
    return {name, std::move(fields), entryKind::fields, 0};
}

inline catalogueEntry word(std::string_view name) {
    return {name, {}, entryKind::word, 0};
}

inline catalogueEntry constantWord(std::string_view name, unsigned int value) {
    return {name, {}, entryKind::constantWord, value};
}

inline catalogueEntry step(std::string_view name) {
    return {name, {}, entryKind::step, 0};
}

/// "REGISTER.FIELD", the name of a field's variable.
std::string fieldName(std::string_view registerName, std::string_view field);

/// The rules of one set as data, in registration order.
///
/// A family that is another one with changes starts from a copy and edits it. An edit whose target
/// is not there, or whose addition is there already, throws std::invalid_argument that names it:
/// it is a slip in the table of differences.
class register_catalogue {
  public:
    register_catalogue() = default;
    register_catalogue(std::initializer_list<catalogueEntry> entries);

    const std::vector<catalogueEntry>& entries() const { return entries_; }
    /// All fields of a register, in order; they may stand in several entries.
    std::vector<registerField> fieldsOf(std::string_view registerName) const;
    /// Number of rules that the catalogue registers; shared fields have none of their own.
    std::size_t ruleCount() const;

    void append(const register_catalogue& others);
    void append(catalogueEntry entry);
    /// Puts the entry in front of the first one named `successor`.
    void insertBefore(std::string_view successor, catalogueEntry entry);
    /// Puts the entry behind the last one named `predecessor`.
    void insertAfter(std::string_view predecessor, catalogueEntry entry);
    /// Puts the entry in the place of the one of its name, which must be the only one.
    void replace(catalogueEntry entry);
    /// Removes every entry of that name.
    void remove(std::string_view name);

    /// Adds a field behind the last one of the register.
    void addField(std::string_view registerName, registerField field);
    /// Puts the field in the place of the register's field of its name.
    void replaceField(std::string_view registerName, registerField field);
    void removeField(std::string_view registerName, std::string_view field);
    /// Gives a constant another value.
    void setConstant(std::string_view registerName, std::string_view field, unsigned int value);

  private:
    using entryIterator = std::vector<catalogueEntry>::iterator;

    entryIterator entryNamed(std::string_view name);
    registerField* findField(std::string_view registerName, std::string_view field);
    registerField& fieldNamed(std::string_view registerName, std::string_view field);

    std::vector<catalogueEntry> entries_;
};

}  // namespace sable_lanecfg
