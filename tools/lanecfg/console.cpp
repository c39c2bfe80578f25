#include "console.h"

#include <boost/format.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
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

/// Messages quote what stands in files, which may be very long, or meant to steer a terminal.
constexpr std::size_t longestStart = 6000;  ///< the longest path is two thirds of it
constexpr std::size_t longestEnd = 1000;    ///< the way out stands there

bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The most of a line of progress: a second line on the terminal would stay.
constexpr std::size_t longestProgress = 76;

/// The beginning of a text, as far as it fits on a line.
std::string beginningOf(const std::string& text) {
    std::size_t length = std::min({text.size(), text.find('\n'), longestProgress});
    while (length > 0 && length < text.size() && continuesCharacter(text[length])) {
        --length;
    }
    return text.substr(0, length);
}

/// Leaves out the middle of a text that is too long, between whole characters.
std::string shortened(const std::string& text) {
    if (text.size() <= longestStart + longestEnd) {
        return text;
    }
    std::size_t start = longestStart;
    while (start > 0 && continuesCharacter(text[start])) {
        --start;
    }
    std::size_t end = text.size() - longestEnd;
    while (end < text.size() && continuesCharacter(text[end])) {
        ++end;
    }
    return text.substr(0, start) + " ... " + text.substr(end);
}

bool steersTerminal(unsigned char code) {
    constexpr unsigned char erase = 0x7F;
    return (code < ' ' && code != '\n' && code != '\t') || code == erase;
}

/// Whether the bytes from here on are one of the control characters U+0080 to U+009F.
bool beginsUpperControl(const std::string& text, std::size_t index) {
    constexpr unsigned char leadByte = 0xC2;
    constexpr unsigned char lastUpperControl = 0x9F;
    return static_cast<unsigned char>(text[index]) == leadByte && index + 1 < text.size() &&
           continuesCharacter(text[index + 1]) &&
           static_cast<unsigned char>(text[index + 1]) <= lastUpperControl;
}

std::string inWords(unsigned char code) {
    return (boost::format("<U+%04X>") % static_cast<unsigned>(code)).str();
}

/// The text as it is safe to show, with control characters in words.
std::string shownText(const std::string& text) {
    const std::string whole = shortened(text);
    std::string shown;
    for (std::size_t index = 0; index < whole.size(); ++index) {
        // The second byte of an upper control character is its number.
        const bool isUpper = beginsUpperControl(whole, index);
        index += isUpper ? 1 : 0;
        const auto code = static_cast<unsigned char>(whole[index]);
        if (isUpper || steersTerminal(code)) {
            shown += inWords(code);
        } else {
            shown += whole[index];
        }
    }
    return shown;
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
    if (severity == ToolMsgSeverity::error) {
        ++errorCount_;
    }
    const SeverityLook& look = lookOf(severity);
    // The library tells the same of each lane and rate.
    std::string message = look.label + text;
    if (message == lastMessage_) {
        return;
    }
    lastMessage_ = std::move(message);
    if (hasColour_) {
        std::cerr << look.colour << look.label << ':' << endOfColour;
    } else {
        std::cerr << look.label << ':';
    }
    std::cerr << ' ' << shownText(text) << '\n';
}

void Console::progress(const std::string& what) {
    if (!isTerminal_) {
        return;
    }
    std::cerr << eraseLine << shownText(beginningOf(what)) << " ..." << std::flush;
    showsProgress_ = true;
}

void Console::endProgress() {
    if (showsProgress_) {
        std::cerr << eraseLine << std::flush;
        showsProgress_ = false;
    }
}

}  // namespace sable_lanecfg::tool
