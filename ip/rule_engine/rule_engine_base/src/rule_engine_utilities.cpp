#include <lanecfg/host/ToolMsgMgr.h>
#include <lanecfg/rule_engine_utilities.h>

#include <boost/algorithm/string/replace.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

namespace sable_lanecfg {

namespace {

/// How a severity word goes to the host. The lines are those under which users know the messages,
/// so they stay when this file changes.
struct messageKind {
    std::string_view word;
    unsigned severity;
    int line;
};

constexpr std::array<messageKind, 4> messageKinds{{
    {"error", ToolMsgSeverity::error, 144},
    {"info", ToolMsgSeverity::info, 148},
    {"warning", ToolMsgSeverity::warning, 152},
    {"critical_warning", ToolMsgSeverity::criticalWarning, 156},
}};

constexpr const char* messageSource = "ip/rule_engine/rule_engine_base/rule_engine_utilities";

/// Units in one quad of a family.
struct quadUnits {
    std::string_view family;
    int channels;
    int clockUnits;
    int controlUnits;
    int calibrationUnits;
};

constexpr quadUnits dualUnits{"SXD4", 2, 1, 1, 1};
constexpr quadUnits fourChannelUnits{"", 4, 2, 1, 2};

const quadUnits& unitsOf(const std::string& family) {
    return family == dualUnits.family ? dualUnits : fourChannelUnits;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

/// Number at the start of the text, as the standard streams read it, 0 where there is none.
template <class Number>
Number streamedNumber(const std::string& text) {
    Number number = 0;
    std::istringstream stream(text);
    stream >> number;
    return number;
}

/// Text of a value as `serializeMap` gives it.
struct serializedValue : boost::static_visitor<std::string> {
    std::string operator()(const boost::blank& /*undefined*/) const { return "None"; }
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(unsigned int number) const { return std::to_string(number); }
    std::string operator()(bool flag) const { return std::to_string(static_cast<int>(flag)); }
    std::string operator()(float number) const { return std::to_string(number); }
    std::string operator()(double number) const { return std::to_string(number); }
    std::string operator()(const std::vector<double>& /*list*/) const {
        return "Vector of Doubls (Unimplemented in the dumping function)";
    }
};

std::map<std::string, std::vector<std::string>> serialized(const variableMap& vars) {
    std::map<std::string, std::vector<std::string>> result;
    for (const auto& [name, info] : vars) {
        std::string owner = info.ruleNumber ? std::to_string(*info.ruleNumber) : "None";
        result.emplace_hint(
            result.end(), name,
            std::vector<std::string>{std::move(owner),
                                     boost::apply_visitor(serializedValue(), info.value)});
    }
    return result;
}

}  // namespace

std::vector<std::string> rule_engine_utilities::mLogContent;

void rule_engine_utilities::write_log(std::string line) {
    mLogContent.push_back(std::move(line));
}

std::vector<std::string> rule_engine_utilities::get_log_content() {
    return mLogContent;
}

void rule_engine_utilities::clean_log() {
    mLogContent.clear();
}

void rule_engine_utilities::addMessage(const std::string& text, std::string severity) {
    const std::string word = lowerCase(std::move(severity));
    const auto* const kind =
        std::find_if(messageKinds.begin(), messageKinds.end(),
                     [&word](const messageKind& candidate) { return candidate.word == word; });
    if (kind == messageKinds.end()) {
        return;
    }
    ToolMsgMgr::sendMessage(ToolMsgMgrInstance::createInstance::eval(0, messageSource, kind->line,
                                                                     "ip", kind->severity, text));
}

std::string rule_engine_utilities::getString(int number) {
    std::ostringstream text;
    text << number;
    return text.str();
}

unsigned int rule_engine_utilities::getInt(const std::string& text) {
    return streamedNumber<unsigned int>(text);
}

float rule_engine_utilities::getFloat(const std::string& text) {
    return streamedNumber<float>(text);
}

double rule_engine_utilities::getDouble(const std::string& text) {
    return streamedNumber<double>(text);
}

bool rule_engine_utilities::stringToBool(const std::string& text) {
    const std::string word = lowerCase(text);
    return word == "1" || word == "true";
}

std::string rule_engine_utilities::boolToString(bool flag) {
    return flag ? "true" : "false";
}

int rule_engine_utilities::calculateDeep(const std::vector<std::string>& tokens) {
    const auto lastOther = std::find_if(tokens.rbegin(), tokens.rend(),
                                        [](const std::string& token) { return token != "}"; });
    return static_cast<int>(std::distance(tokens.rbegin(), lastOther));
}

void rule_engine_utilities::find_and_replace(std::string& text, const std::string& from,
                                             const std::string& to) {
    boost::replace_all(text, from, to);
}

int rule_engine_utilities::ChPerBlock(const std::string& family) {
    return unitsOf(family).channels;
}

int rule_engine_utilities::HsClkPerBlock(const std::string& family) {
    return unitsOf(family).clockUnits;
}

int rule_engine_utilities::CtrlPerBlock(const std::string& family) {
    return unitsOf(family).controlUnits;
}

int rule_engine_utilities::RcalPerBlock(const std::string& family) {
    return unitsOf(family).calibrationUnits;
}

int rule_engine_utilities::ChPerHsClk(const std::string& family) {
    return ChPerBlock(family) / HsClkPerBlock(family);
}

bool rule_engine_utilities::addressCompare(std::map<std::string, std::string> first,
                                           std::map<std::string, std::string> second) {
    // A missing address is read as the empty text, which is no number.
    return std::stoi(first["Address"]) < std::stoi(second["Address"]);
}

std::map<std::string, std::vector<std::string>> rule_engine_utilities::serializeMap(
    std::map<std::string, varInfo> vars) {
    return serialized(vars);
}

std::vector<std::vector<std::map<std::string, std::vector<std::string>>>>
rule_engine_utilities::repkgVarMap(
    std::vector<std::vector<std::map<std::string, varInfo>>> snapshots) {
    std::vector<std::vector<std::map<std::string, std::vector<std::string>>>> result;
    result.reserve(snapshots.size());
    for (const auto& channel : snapshots) {
        auto& passes = result.emplace_back();
        passes.reserve(channel.size());
        std::transform(channel.begin(), channel.end(), std::back_inserter(passes), serialized);
    }
    return result;
}

}  // namespace sable_lanecfg
