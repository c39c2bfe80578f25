#pragma once

#include "packing_question.h"
#include "table.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Why channels do not fit into a quad, and whom it concerns.
struct PackingReason {
    std::string level;  ///< "channel", "dual" or "quad"
    std::set<int> lanes;
    std::string pll;        ///< empty unless the reason is about one
    std::set<int> txRates;  ///< rate slots of the transmitters and receivers concerned
    std::set<int> rxRates;
    std::string text;  ///< one sentence, without level and line feed
};

/// The reasons by level, from the channels up to the quad, and in the order of the library within
/// a level.
std::vector<PackingReason> packingReasons(const PackingQuestion& question);

/// The text of the first of these reasons, from the messages of the library; empty without any.
std::string firstReasonText(const std::map<int, std::string>& messages);

Table reasonTable(const std::vector<PackingReason>& reasons);
Json reasonDocument(const std::vector<PackingReason>& reasons);

}  // namespace sable_lanecfg::tool
