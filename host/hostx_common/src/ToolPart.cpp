#include <lanecfg/host/ToolPart.h>

#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace {

constexpr std::size_t tokenCount = 7;

std::vector<std::string> tokensOf(const std::string& partName) {
    std::vector<std::string> tokens;
    boost::algorithm::split(tokens, partName, [](char character) { return character == '-'; });
    const bool anyEmpty = std::any_of(tokens.begin(), tokens.end(),
                                      [](const std::string& token) { return token.empty(); });
    if (tokens.size() != tokenCount || anyEmpty) {
        throw std::invalid_argument("The part name \"" + partName +
                                    "\" does not have the form DEVICE-PACKAGE-SPEED-TEMPERATURE-"
                                    "ARCHITECTURE-REVISION-FAMILY.");
    }
    return tokens;
}

}  // namespace

ToolPart::ToolPart(const std::string& partName) {
    const std::vector<std::string> tokens = tokensOf(partName);
    device_ = tokens[0];
    package_ = tokens[1];
    speed_ = tokens[2];
    temperature_ = tokens[3];
    architecture_ = tokens[4];
    revision_ = tokens[5];
    family_ = tokens[6];
}

std::string ToolPart::getArchitecture() const {
    return architecture_;
}

std::string ToolPart::getSpeedGrade() const {
    return "-" + speed_;
}

std::string ToolPart::getDevice() const {
    return device_;
}

std::string ToolPart::getPackage() const {
    return package_;
}

std::string ToolPart::getSiliconRevision() const {
    return revision_;
}

std::string ToolPart::getTemperatureGrade() const {
    return temperature_;
}

std::string ToolPart::getFamily(int /*style*/) const {
    return family_;
}
