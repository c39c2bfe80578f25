#pragma once

#include "families/common/register_catalogue.h"

#include <string_view>
#include <vector>

namespace sable_lanecfg {

/// All registers of a family, under the name of its folder in the reference database.
struct familyCatalogue {
    std::string_view family;
    const register_catalogue& (*catalogue)();
};

/// The families that have a catalogue.
const std::vector<familyCatalogue>& familyCatalogues();

}  // namespace sable_lanecfg
