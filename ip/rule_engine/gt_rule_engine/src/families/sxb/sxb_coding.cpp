#include "families/sxb/sxb_coding.h"

#include "families/common/register_catalogue.h"

#include <optional>

namespace sable_lanecfg {

namespace {

bool holds(const std::string& word, const char* part) {
    return word.find(part) != std::string::npos;
}

unsigned int gearboxMode(const std::string& coding) {
    if (!holds(coding, "64B")) {
        return 0;
    }
    const unsigned int frame = holds(coding, "64B66B") ? 1 : 0;
    const unsigned int multiplexed = holds(coding, "CAUI") ? 1 : 0;
    const unsigned int asynchronous = holds(coding, "ASYNC") ? 4 : 0;
    return frame + 4 * (multiplexed + asynchronous);
}

}  // namespace

ruleDeclarer gearbox(const laneSide& side, const std::string& registerName,
                     gearboxContent content) {
    return [side, registerName, content](rule_declaration& rule) {
        const auto coding = rule.reads<std::string>(std::string(side.coding));
        const auto inUse = rule.writes(fieldName(registerName, "USE_GB"));
        const auto mode = rule.writes(fieldName(registerName, "MODE"));
        std::optional<rule_output<unsigned int>> asynchronous;
        if (content == gearboxContent::fieldsAndAsynchronous) {
            asynchronous = rule.writes(side.within("INT_", "_ASYNC_GEARBOX_EN"));
        }
        rule.body([=] {
            const bool used = holds(coding(), "64B");
            inUse.set(used ? 1 : 0);
            mode.set(gearboxMode(coding()));
            if (asynchronous) {
                asynchronous->set(used && holds(coding(), "ASYNC") ? 1 : 0);
            }
        });
    };
}

}  // namespace sable_lanecfg
