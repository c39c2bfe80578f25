#include "packing/packing_faults.h"

#include <lanecfg/rule_engine_utilities.h>

#include <boost/format.hpp>

namespace sable_lanecfg {

namespace {

constexpr const char* packingSourceFile = "ip/rule_engine/gt_rule_engine/src/gt_quad_packing";
/// What a host looks for in the answers when it wants no messages.
constexpr const char* silentText = "ERROR caught";

}  // namespace

void addPackingMessage(packingMessages& messages, const std::string& text) {
    const int number = messages.empty() ? 1 : messages.rbegin()->first + 1;
    messages.emplace(number, text);
}

void addPackingMessages(packingMessages& messages, const packingMessages& added) {
    for (const auto& [number, text] : added) {
        addPackingMessage(messages, text);
    }
}

void showFault(const char* format, const std::exception& fault, int line, const char* sourceFile) {
    const std::string text = (boost::format(format) % fault.what() % line % sourceFile).str();
    rule_engine_utilities::addMessage(text, "error");
}

void showPackingFault(const char* format, const std::exception& fault, int line) {
    showFault(format, fault, line, packingSourceFile);
}

void reportPackingFault(const char* format, const std::exception& fault, int line, bool logErrors,
                        packingMessages& messages) {
    if (logErrors) {
        showPackingFault(format, fault, line);
    } else {
        addPackingMessage(messages, silentText);
    }
}

}  // namespace sable_lanecfg
