#include "console.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <unistd.h>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

struct SeverityLook {
    unsigned severity;
    const char* label;
    const char* colour;
};

constexpr std::array<SeverityLook, 5> severityLooks = {{
    {ToolMsgSeverity::status, "STATUS", "\x1b[2m"},
    {ToolMsgSeverity::info, "INFO", "\x1b[36m"},
    {ToolMsgSeverity::warning, "WARNING", "\x1b[33m"},
    {ToolMsgSeverity::criticalWarning, "CRITICAL WARNING", "\x1b[1;33m"},
    {ToolMsgSeverity::error, "ERROR", "\x1b[1;31m"},
}};
constexpr const char* endOfColour = "\x1b[0m";
constexpr const char* eraseLine = "\r\x1b[K";

/// An unknown severity is shown as plain information.
const SeverityLook& lookOf(unsigned severity) {
    const auto* const found =
        std::find_if(severityLooks.begin(), severityLooks.end(),
                     [severity](const SeverityLook& look) { return look.severity == severity; });
    return found == severityLooks.end() ? severityLooks[1] : *found;
}

}  // namespace

Console::Console()
    : isTerminal_(isatty(STDERR_FILENO) == 1),
      // NO_COLOR is the common wish of users who want plain text on every terminal.
      hasColour_(isTerminal_ && std::getenv("NO_COLOR") == nullptr) {
    previousSink_ = ToolMsgMgr::setSink(
        [this](const ToolMsgRecord& record) { show(record.severity, record.text()); });
}

Console::~Console() {
    endProgress();
    ToolMsgMgr::setSink(std::move(previousSink_));
}

void Console::show(unsigned severity, const std::string& text) {
    endProgress();
    const SeverityLook& look = lookOf(severity);
    if (hasColour_) {
        std::cerr << look.colour << look.label << ':' << endOfColour;
    } else {
        std::cerr << look.label << ':';
    }
    std::cerr << ' ' << text << '\n';
    if (severity == ToolMsgSeverity::error) {
        ++errorCount_;
    }
}

void Console::progress(const std::string& what) {
    if (!isTerminal_) {
        return;
    }
    std::cerr << eraseLine << what << " ..." << std::flush;
    showsProgress_ = true;
}

void Console::endProgress() {
    if (showsProgress_) {
        std::cerr << eraseLine << std::flush;
        showsProgress_ = false;
    }
}

}  // namespace sable_lanecfg::tool
