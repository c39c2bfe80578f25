#include "families/common/register_catalogue.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace sable_lanecfg {

namespace {

[[noreturn]] void refuse(std::string_view problem, std::string_view name) {
    throw std::invalid_argument("register catalogue: " + std::string(problem) + " " +
                                std::string(name));
}

auto isNamed(std::string_view name) {
    return [name](const auto& item) { return item.name == name; };
}

std::size_t rulesOf(const catalogueEntry& entry) {
    const auto ownRules =
        std::count_if(entry.fields.begin(), entry.fields.end(),
                      [](const registerField& field) { return field.kind != fieldKind::shared; });
    const bool registersWord = entry.kind != entryKind::fields;
    return static_cast<std::size_t>(ownRules) + (registersWord ? 1U : 0U);
}

}  // namespace

std::string fieldName(std::string_view registerName, std::string_view field) {
    std::string name;
    name.reserve(registerName.size() + 1 + field.size());
    name.append(registerName).append(".").append(field);
    return name;
}

register_catalogue::register_catalogue(std::initializer_list<catalogueEntry> entries)
    : entries_(entries) {}

std::vector<registerField> register_catalogue::fieldsOf(std::string_view registerName) const {
    std::vector<registerField> fields;
    for (const catalogueEntry& entry : entries_) {
        if (entry.name == registerName) {
            fields.insert(fields.end(), entry.fields.begin(), entry.fields.end());
        }
    }
    return fields;
}

std::size_t register_catalogue::ruleCount() const {
    return std::accumulate(
        entries_.begin(), entries_.end(), std::size_t{0},
        [](std::size_t count, const catalogueEntry& entry) { return count + rulesOf(entry); });
}

void register_catalogue::append(const register_catalogue& others) {
    // A copy first, so that a catalogue can be appended to itself.
    const std::vector<catalogueEntry> added = others.entries_;
    entries_.insert(entries_.end(), added.begin(), added.end());
}

void register_catalogue::append(catalogueEntry entry) {
    entries_.push_back(std::move(entry));
}

void register_catalogue::insertBefore(std::string_view successor, catalogueEntry entry) {
    entries_.insert(entryNamed(successor), std::move(entry));
}

void register_catalogue::insertAfter(std::string_view predecessor, catalogueEntry entry) {
    const auto place = std::find_if(entries_.rbegin(), entries_.rend(), isNamed(predecessor));
    if (place == entries_.rend()) {
        refuse("no entry", predecessor);
    }
    entries_.insert(place.base(), std::move(entry));
}

void register_catalogue::replace(catalogueEntry entry) {
    const auto place = entryNamed(entry.name);
    if (std::find_if(std::next(place), entries_.end(), isNamed(entry.name)) != entries_.end()) {
        refuse("several entries of", entry.name);
    }
    *place = std::move(entry);
}

void register_catalogue::remove(std::string_view name) {
    entries_.erase(std::remove_if(entryNamed(name), entries_.end(), isNamed(name)), entries_.end());
}

void register_catalogue::addField(std::string_view registerName, registerField field) {
    if (findField(registerName, field.name) != nullptr) {
        refuse("there is already a field", fieldName(registerName, field.name));
    }
    const auto last =
        std::find_if(entries_.rbegin(), entries_.rend(), [&](const catalogueEntry& entry) {
            const bool holdsFields =
                entry.kind == entryKind::wholeRegister || entry.kind == entryKind::fields;
            return holdsFields && entry.name == registerName;
        });
    if (last == entries_.rend()) {
        refuse("no register with fields", registerName);
    }
    last->fields.push_back(field);
}

void register_catalogue::replaceField(std::string_view registerName, registerField field) {
    fieldNamed(registerName, field.name) = field;
}

void register_catalogue::removeField(std::string_view registerName, std::string_view field) {
    for (catalogueEntry& entry : entries_) {
        const auto place =
            entry.name == registerName
                ? std::find_if(entry.fields.begin(), entry.fields.end(), isNamed(field))
                : entry.fields.end();
        if (place != entry.fields.end()) {
            entry.fields.erase(place);
            return;
        }
    }
    refuse("no field", fieldName(registerName, field));
}

void register_catalogue::setConstant(std::string_view registerName, std::string_view field,
                                     unsigned int value) {
    registerField& changed = fieldNamed(registerName, field);
    if (changed.kind != fieldKind::constant) {
        refuse("not a constant:", fieldName(registerName, field));
    }
    changed.value = value;
}

register_catalogue::entryIterator register_catalogue::entryNamed(std::string_view name) {
    const auto place = std::find_if(entries_.begin(), entries_.end(), isNamed(name));
    if (place == entries_.end()) {
        refuse("no entry", name);
    }
    return place;
}

registerField* register_catalogue::findField(std::string_view registerName,
                                             std::string_view field) {
    for (catalogueEntry& entry : entries_) {
        if (entry.name != registerName) {
            continue;
        }
        const auto place = std::find_if(entry.fields.begin(), entry.fields.end(), isNamed(field));
        if (place != entry.fields.end()) {
            return &*place;
        }
    }
    return nullptr;
}

registerField& register_catalogue::fieldNamed(std::string_view registerName,
                                              std::string_view field) {
    registerField* const found = findField(registerName, field);
    if (found == nullptr) {
        refuse("no field", fieldName(registerName, field));
    }
    return *found;
}

}  // namespace sable_lanecfg
