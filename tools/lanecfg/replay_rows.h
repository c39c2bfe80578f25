#pragma once

#include "rate_table_replay.h"
#include "table.h"

#include <string>

namespace sable_lanecfg::tool {

enum class ReplayRows { all, deviating };

/// One row for each finding: class, register, channel, table, rate, where the channel came from,
/// wanted and reached word.
Table replayRows(const ReplayReport& report, ReplayRows which);

/// How many findings are of which class, on one line.
std::string classCounts(const ReplayReport& report);

/// One line: that all rates of all channels replay, or the first register that does not.
std::string verdict(const ReplayReport& report);

/// Verdict, counts by class, and all findings.
Json replayDocument(const ReplayReport& report);

}  // namespace sable_lanecfg::tool
