#pragma once

#include "database/json_value.h"

#include <boost/property_tree/ptree.hpp>

#include <string>

namespace sable_lanecfg {

/// Content of a JSON file, stored plain or packed. A file that can't be read, is no JSON or nests
/// deeper than 256 levels is reported, and the tree is then empty. `Tree` is a property tree, or
/// json_value where the file is large and nothing more is needed.
template <class Tree>
Tree readJsonFile(const std::string& file);

extern template boost::property_tree::ptree readJsonFile(const std::string& file);
extern template json_value readJsonFile(const std::string& file);

}  // namespace sable_lanecfg
