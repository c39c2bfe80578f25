#pragma once

#include <lanecfg/host/ToolMsgMgr.h>

#include <string>
#include <vector>

namespace lanecfg_test {

/// Collects every host message while it lives, in place of the sink before it.
class CapturedMessages {
  public:
    CapturedMessages();
    ~CapturedMessages();
    CapturedMessages(const CapturedMessages&) = delete;
    CapturedMessages& operator=(const CapturedMessages&) = delete;

    const std::vector<ToolMsgRecord>& records() const { return records_; }
    /// Finished texts, in order.
    std::vector<std::string> texts() const;
    /// Finished texts of one severity mask, in order.
    std::vector<std::string> texts(unsigned severity) const;

  private:
    std::vector<ToolMsgRecord> records_;
    ToolMsgMgr::Sink previous_;
};

}  // namespace lanecfg_test
