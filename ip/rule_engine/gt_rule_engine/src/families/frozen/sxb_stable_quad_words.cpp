#include "families/frozen/sxb_stable_quad_words.h"

namespace sable_lanecfg {

quadWordLayout stableQuadWords() {
    return {false,
            {{"MEMCELLX0C12", "HS0_LCPLL_", 0, "LCPLL"},
             {"MEMCELLX0C13", "HS0_RPLL_", 0, "RPLL"},
             {"MEMCELLX0F12", "HS1_LCPLL_", 1, "LCPLL"},
             {"MEMCELLX0F13", "HS1_RPLL_", 1, "RPLL"}},
            {{"MST_RESET_CFG", "_LCPLL_RESET_EN"},
             {"MST_RESET_CFG", "_RPLL_RESET_EN"},
             {"MST_RESET_CFG", "_ILO_RESET_EN"},
             {"MST_RESET_CFG", "_TX_PROGDIV_RESET_EN"},
             {"MST_RESET_CFG", "_TX_CH_RESET_EN"},
             {"MST_RESET_CFG", "_RX_PROGDIV_RESET_EN"},
             {"MST_RESET_CFG", "_RX_CH_RESET_EN"}},
            false};
}

}  // namespace sable_lanecfg
