#include "support/loader_messages.h"

namespace lanecfg_test {

std::string parseError(const std::string& file) {
    return "Error in parsing the file " + file + ".";
}

std::string missingQuadUsage(const std::string& file) {
    return "quadUsage node not found. That is ok for SXD4, but not SXB - " + file + ".";
}

std::string unusableLaneUsage(const std::string& file) {
    return "Error in getting the Lane Usage data " + file + ".";
}

std::string unknownParameter(const std::string& name) {
    return "Error in loading the user param " + name + " from the userParameterTypes Json file.";
}

std::string unconvertibleParameters() {
    return "Error in filling the user parameters Map";
}

std::string unusableParameters() {
    return "Error in loading the user parameters. Please check whether all the required parameters "
           "are passed";
}

}  // namespace lanecfg_test
