#include "support/captured_messages.h"

#include <utility>

namespace lanecfg_test {

CapturedMessages::CapturedMessages()
    : previous_(ToolMsgMgr::setSink(
          [this](const ToolMsgRecord& record) { records_.push_back(record); })) {}

CapturedMessages::~CapturedMessages() {
    ToolMsgMgr::setSink(std::move(previous_));
}

std::vector<std::string> CapturedMessages::texts() const {
    std::vector<std::string> result;
    for (const ToolMsgRecord& record : records_) {
        result.push_back(record.text());
    }
    return result;
}

std::vector<std::string> CapturedMessages::texts(unsigned severity) const {
    std::vector<std::string> result;
    for (const ToolMsgRecord& record : records_) {
        if (record.severity == severity) {
            result.push_back(record.text());
        }
    }
    return result;
}

}  // namespace lanecfg_test
