#include "families/sxb/sxb_silicon.h"

namespace sable_lanecfg {

bool isEarlySilicon(const std::string& revision) {
    return revision == "es1" || revision == "ES1";
}

ruleDeclarer bySilicon(unsigned int earlySilicon, unsigned int laterSilicon) {
    return [=](rule_declaration& rule) {
        const auto revision = rule.reads<std::string>("siliconRev");
        rule.gives([=] { return isEarlySilicon(revision()) ? earlySilicon : laterSilicon; });
    };
}

}  // namespace sable_lanecfg
