#include "run_warnings.h"

#include "clock_warnings.h"
#include "packing_reasons.h"
#include "shared_word_warnings.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/trim.hpp>

#include <map>
#include <string>

namespace sable_lanecfg::tool {
namespace {

void tellOfPacking(const Request& request, const std::map<int, std::string>& messages,
                   Console& console) {
    if (messages.empty()) {
        return;
    }
    const std::string reason =
        boost::algorithm::trim_right_copy_if(firstReasonText(messages), boost::is_any_of("."));
    const std::string count =
        messages.size() == 1 ? ""
                             : " for " + std::to_string(messages.size()) + " reasons, the first";
    console.warning("Request " + request.file + ": the channels don't fit into a quad" + count +
                    ": " + reason + ". The registers can't serve all of them; lanecfg pack " +
                    request.file + " --why tells what stands in the way.");
}

}  // namespace

void tellOfRun(const Request& request, const gt_rule_engine& engine, Console& console) {
    tellOfPacking(request, engine.packedChannels, console);
    tellOfClocks(request, clockWarnings(engine), console);
    // What doesn't fit has no PLL words that would be right.
    if (engine.packedChannels.empty()) {
        tellOfSharedWords(request, engine, console);
    }
}

}  // namespace sable_lanecfg::tool
