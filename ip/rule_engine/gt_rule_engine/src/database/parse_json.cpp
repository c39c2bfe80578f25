// Alone in its file: beside other templates the compiler's budget for inlining runs out within the
// parser, which then takes a third longer.
#include "database/parse_json.h"

#include <boost/property_tree/json_parser.hpp>

namespace sable_lanecfg {

void parseJson(std::istream& text, boost::property_tree::ptree& tree) {
    boost::property_tree::read_json(text, tree);
}

void parseJson(std::istream& text, json_value& tree) {
    boost::property_tree::read_json(text, tree);
}

}  // namespace sable_lanecfg
