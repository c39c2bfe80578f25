#pragma once

#include <functional>
#include <string>
#include <vector>

/// One message on its way to the user.
struct ToolMsgRecord {
    int argumentCount = 0;               ///< how many `arguments` the format takes
    std::string file;                    ///< source file that reports
    int line = 0;                        ///< line in that file
    std::string subsystem;               ///< subsystem word, "ip" for everything of this library
    unsigned severity = 0;               ///< severity mask, see ToolMsgSeverity
    std::string format;                  ///< text, with "%s" for each argument
    std::vector<std::string> arguments;  ///< values of the "%s", in order

    /// The finished text. Without arguments the format goes out as it is, "%" included.
    std::string text() const;
};

/// Severity masks of the host.
namespace ToolMsgSeverity {
constexpr unsigned status = 0x1000000;
constexpr unsigned info = 0x4000000;
constexpr unsigned warning = 0x8000000;
constexpr unsigned criticalWarning = 0x10000000;
constexpr unsigned error = 0x20000000;
}  // namespace ToolMsgSeverity

/// A message object as the host makes it from its parts.
class ToolMsgMgrInstance {
  public:
    /// Factory of the host, kept as a type because callers name it `createInstance::eval`.
    struct createInstance {
        static ToolMsgMgrInstance eval(int argumentCount, const std::string& file, int line,
                                       const std::string& subsystem, unsigned severity,
                                       const std::string& format,
                                       const std::vector<std::string>& arguments = {});
    };

    const ToolMsgRecord& record() const { return record_; }

  private:
    explicit ToolMsgMgrInstance(ToolMsgRecord record);

    ToolMsgRecord record_;
};

/// The host's message manager: every message goes to one sink.
class ToolMsgMgr {
  public:
    using Sink = std::function<void(const ToolMsgRecord&)>;

    /// Hands the message to the sink at once, on the calling thread.
    static void sendMessage(const ToolMsgMgrInstance& message);

    /// Replaces the sink and gives back the one before it. An empty sink restores the default,
    /// which prints "STATUS: ", "INFO: ", "WARNING: ", "CRITICAL WARNING: " or "ERROR: " and the
    /// text on standard error, unbuffered.
    static Sink setSink(Sink sink);
};
