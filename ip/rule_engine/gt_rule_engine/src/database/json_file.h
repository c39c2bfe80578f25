#pragma once

#include <boost/property_tree/ptree.hpp>

#include <string>

namespace sable_lanecfg {

/// Content of a JSON file, stored plain or packed. A file that can't be read, is no JSON or nests
/// deeper than 256 levels is reported, and the tree is then empty.
boost::property_tree::ptree readJsonFile(const std::string& file);

}  // namespace sable_lanecfg
