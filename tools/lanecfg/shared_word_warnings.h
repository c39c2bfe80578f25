#pragma once

#include "console.h"
#include "request.h"

#include <lanecfg/gt_rule_engine.h>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Words of a dual's clock group or of the quad that don't serve the lanes in use. The library
/// answers such a word from the first pass of the last lane that shares it, whether or not the lane
/// is used: where it doesn't use the PLL that the word sets and a lane that does needs another
/// word, the link does not get its clock. One text for each dual and PLL, then for the quad, that
/// names both lanes, the words by the names of the answer, and the way out. Words that the services
/// of a quad put together from several lanes are passed over; so are the words of the quad of
/// families that don't pack, whose services put together others.
std::vector<std::string> sharedWordWarnings(const gt_rule_engine& engine, bool isPacked);

/// Shows each as a warning about the request.
void tellOfSharedWords(const Request& request, const gt_rule_engine& engine, Console& console);

}  // namespace sable_lanecfg::tool
