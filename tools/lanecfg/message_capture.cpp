#include "message_capture.h"

#include <utility>

namespace sable_lanecfg::tool {

MessageCapture::MessageCapture()
    : previous_(ToolMsgMgr::setSink(
          [this](const ToolMsgRecord& record) { records_.push_back(record); })) {}

MessageCapture::~MessageCapture() {
    ToolMsgMgr::setSink(std::move(previous_));
}

}  // namespace sable_lanecfg::tool
