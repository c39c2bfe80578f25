#include <lanecfg/host/ToolMsgMgr.h>

#include <boost/format.hpp>

#include <array>
#include <iostream>
#include <utility>

namespace {

/// What the default sink writes before the text. The most severe bit of a mask decides.
const char* severityPrefix(unsigned severity) {
    struct Prefix {
        unsigned mask;
        const char* text;
    };
    static constexpr std::array<Prefix, 4> prefixes{{
        {ToolMsgSeverity::error, "ERROR: "},
        {ToolMsgSeverity::criticalWarning, "CRITICAL WARNING: "},
        {ToolMsgSeverity::warning, "WARNING: "},
        {ToolMsgSeverity::info, "INFO: "},
    }};
    for (const Prefix& prefix : prefixes) {
        if ((severity & prefix.mask) != 0) {
            return prefix.text;
        }
    }
    return "STATUS: ";
}

/// Standard error is unbuffered; one write for each message keeps its line whole.
void printToStandardError(const ToolMsgRecord& record) {
    std::cerr << severityPrefix(record.severity) + record.text() + '\n';
}

ToolMsgMgr::Sink& currentSink() {
    static ToolMsgMgr::Sink sink = printToStandardError;
    return sink;
}

}  // namespace

std::string ToolMsgRecord::text() const {
    if (argumentCount <= 0 || arguments.empty()) {
        return format;
    }
    boost::format message;
    // A message must reach the user even when its format and its arguments don't fit together.
    message.exceptions(boost::io::no_error_bits);
    message.parse(format);
    for (const std::string& argument : arguments) {
        message % argument;
    }
    return message.str();
}

ToolMsgMgrInstance::ToolMsgMgrInstance(ToolMsgRecord record) : record_(std::move(record)) {}

ToolMsgMgrInstance ToolMsgMgrInstance::createInstance::eval(
    int argumentCount, const std::string& file, int line, const std::string& subsystem,
    unsigned severity, const std::string& format, const std::vector<std::string>& arguments) {
    return ToolMsgMgrInstance({argumentCount, file, line, subsystem, severity, format, arguments});
}

void ToolMsgMgr::sendMessage(const ToolMsgMgrInstance& message) {
    // A copy, because the sink may replace itself while it runs.
    const Sink sink = currentSink();
    sink(message.record());
}

ToolMsgMgr::Sink ToolMsgMgr::setSink(Sink sink) {
    if (!sink) {
        sink = printToStandardError;
    }
    return std::exchange(currentSink(), std::move(sink));
}
