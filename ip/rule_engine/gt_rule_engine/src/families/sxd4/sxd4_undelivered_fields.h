#pragma once

#include <string_view>
#include <vector>

namespace sable_lanecfg {

/// A field and what it holds until its rule is there.
struct undeliveredField {
    std::string_view registerName;
    std::string_view field;
    unsigned int value;
};

/// The fields that hardware computes in a way that is not known: neither what they depend on nor
/// their values are, and each holds 0. To fill one in, change its value here or take its
/// row out and add a rule of that name to the group where it belongs.
const std::vector<undeliveredField>& undeliveredFields();

}  // namespace sable_lanecfg
