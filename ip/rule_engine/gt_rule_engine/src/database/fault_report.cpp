#include "database/fault_report.h"

#include <lanecfg/rule_engine_utilities.h>

#include <boost/format.hpp>

namespace sable_lanecfg {

void reportError(const char* format, const std::string& argument) {
    rule_engine_utilities::addMessage((boost::format(format) % argument).str(), "error");
}

void reportParseError(const std::string& file) {
    reportError("Error in parsing the file %s.", file);
}

void reportUnknownParameter(const std::string& name) {
    reportError("Error in loading the user param %s from the userParameterTypes Json file.", name);
}

}  // namespace sable_lanecfg
