#include "families/frozen/sxb_stable_quad_words.h"

#include <algorithm>
#include <string_view>

namespace sable_lanecfg {

quadWordLayout stableQuadWords() {
    quadWordLayout layout = currentQuadWords();
    layout.asksWhoUsesPlls = false;
    layout.listsStaticRegisters = false;
    layout.referenceWords = {{"MEMCELLX0C12", "HS0_LCPLL_", 0, "LCPLL"},
                             {"MEMCELLX0C13", "HS0_RPLL_", 0, "RPLL"},
                             {"MEMCELLX0F12", "HS1_LCPLL_", 1, "LCPLL"},
                             {"MEMCELLX0F13", "HS1_RPLL_", 1, "RPLL"}};
    // Receivers have no reset enables of their own for the PLLs.
    const auto isOfReceiversPll = [](const laneField& field) {
        const std::string_view ending = field.ending;
        return ending == "_RX_LCPLL_RESET_EN" || ending == "_RX_RPLL_RESET_EN";
    };
    auto& fields = layout.laneFields;
    fields.erase(std::remove_if(fields.begin(), fields.end(), isOfReceiversPll), fields.end());
    return layout;
}

}  // namespace sable_lanecfg
