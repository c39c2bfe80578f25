#pragma once

#include "families/sxb/sxb_quad_attributes.h"

namespace sable_lanecfg {

/// Where the frozen rules have the words of a quad: each PLL of each dual has a reference clock
/// word of its own, the first lane of a dual configures its PLLs, and the list of registers that no
/// rate changes is no part of the answer.
quadWordLayout stableQuadWords();

}  // namespace sable_lanecfg
