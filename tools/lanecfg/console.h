#pragma once

#include <lanecfg/host/ToolMsgMgr.h>

#include <string>

namespace sable_lanecfg::tool {

/// The user's side of the program on standard error: messages of the host and of the program
/// itself, and what goes on during long work. While it lives it is the sink of the host's
/// messages. Labels are coloured and progress is shown on a terminal only.
class Console {
  public:
    Console();
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Shows a message of a ToolMsgSeverity, several alike in a row once. The middle of a very long
    /// one is left out, and control characters stand as such as <U+001B>.
    void show(unsigned severity, const std::string& text);
    void error(const std::string& text) { show(ToolMsgSeverity::error, text); }
    void warning(const std::string& text) { show(ToolMsgSeverity::warning, text); }

    /// Number of messages of severity "error" so far.
    int errorCount() const { return errorCount_; }

    /// Says what is being done now, in place of what was said before. What is no line, or too long
    /// for one, is cut.
    void progress(const std::string& what);
    /// Takes the last progress away.
    void endProgress();

  private:
    ToolMsgMgr::Sink previousSink_;
    bool isTerminal_;
    bool hasColour_;
    bool showsProgress_ = false;
    int errorCount_ = 0;
    std::string lastMessage_;  ///< with its label
};

}  // namespace sable_lanecfg::tool
