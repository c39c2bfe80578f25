// Prints the register catalogue of a family as JSON, for the maker of the reference database.
// Belongs to the build and is not installed.
#include "families/common/family_catalogues.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <exception>
#include <iostream>
#include <string_view>

namespace sable_lanecfg {

// Keys stay in the order in which they are written.
using json = nlohmann::ordered_json;

NLOHMANN_JSON_SERIALIZE_ENUM(fieldKind, {{fieldKind::constant, "constant"},
                                         {fieldKind::copy, "copy"},
                                         {fieldKind::logic, "logic"},
                                         {fieldKind::shared, "shared"}})

NLOHMANN_JSON_SERIALIZE_ENUM(entryKind, {{entryKind::wholeRegister, "register"},
                                         {entryKind::fields, "fields"},
                                         {entryKind::word, "word"},
                                         {entryKind::constantWord, "constantWord"},
                                         {entryKind::step, "step"}})

namespace {

json asJson(const registerField& field) {
    json result{{"name", field.name}, {"kind", field.kind}};
    if (field.kind == fieldKind::constant) {
        result["value"] = field.value;
    }
    if (!field.source.empty()) {
        result["source"] = field.source;
    }
    return result;
}

json asJson(const catalogueEntry& entry) {
    json result{{"name", entry.name}, {"kind", entry.kind}};
    if (entry.kind == entryKind::constantWord) {
        result["value"] = entry.value;
    }
    for (const registerField& field : entry.fields) {
        result["fields"].push_back(asJson(field));
    }
    return result;
}

json asJson(const familyCatalogue& family) {
    json result{{"family", family.family}, {"entries", json::array()}};
    for (const catalogueEntry& entry : family.catalogue().entries()) {
        result["entries"].push_back(asJson(entry));
    }
    return result;
}

int dump(std::string_view family) {
    const auto& catalogues = familyCatalogues();
    const auto found =
        std::find_if(catalogues.begin(), catalogues.end(),
                     [family](const familyCatalogue& row) { return row.family == family; });
    if (found == catalogues.end()) {
        std::cerr << "catalogue_dump: there is no catalogue of the family '" << family << "'\n";
        return 2;
    }
    std::cout << asJson(*found).dump(2) << '\n';
    return 0;
}

}  // namespace

}  // namespace sable_lanecfg

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: catalogue_dump FAMILY\n";
        return 2;
    }
    try {
        return sable_lanecfg::dump(argv[1]);
    } catch (const std::exception& fault) {
        std::cerr << "catalogue_dump: " << fault.what() << '\n';
        return 1;
    }
}
