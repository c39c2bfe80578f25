#pragma once

#include "database/json_value.h"

#include <boost/property_tree/ptree.hpp>

#include <istream>

namespace sable_lanecfg {

/// Replaces the tree by what the JSON text says. Throws boost::property_tree::json_parser_error
/// when it is none, and what the stream's buffer throws; the tree is then left alone.
void parseJson(std::istream& text, boost::property_tree::ptree& tree);
void parseJson(std::istream& text, json_value& tree);

}  // namespace sable_lanecfg
