#pragma once

#include <lanecfg/rule_engine_utilities.h>

namespace lanecfg_test {

/// Leaves the log empty at the begin and at the end of its life, since all tests of a program
/// share the log. A fixture that is about the log has one as a member.
class CleanLog {
  public:
    CleanLog() { sable_lanecfg::rule_engine_utilities::clean_log(); }
    ~CleanLog() { sable_lanecfg::rule_engine_utilities::clean_log(); }
    CleanLog(const CleanLog&) = delete;
    CleanLog& operator=(const CleanLog&) = delete;
};

}  // namespace lanecfg_test
