#pragma once

#include <lanecfg/host/ToolMsgMgr.h>

#include <vector>

namespace sable_lanecfg::tool {

/// Collects the host's messages while it lives, in place of the sink before it.
class MessageCapture {
  public:
    MessageCapture();
    ~MessageCapture();
    MessageCapture(const MessageCapture&) = delete;
    MessageCapture& operator=(const MessageCapture&) = delete;

    const std::vector<ToolMsgRecord>& records() const { return records_; }

  private:
    std::vector<ToolMsgRecord> records_;
    ToolMsgMgr::Sink previous_;
};

}  // namespace sable_lanecfg::tool
