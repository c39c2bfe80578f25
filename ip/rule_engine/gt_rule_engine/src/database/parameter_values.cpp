#include "database/parameter_values.h"

#include <lanecfg/rule_engine_utilities.h>

#include <boost/format.hpp>

namespace sable_lanecfg {

void reportUnknownParameter(const std::string& name) {
    rule_engine_utilities::addMessage(
        (boost::format(
             "Error in loading the user param %s from the userParameterTypes Json file.") %
         name)
            .str(),
        "error");
}

}  // namespace sable_lanecfg
