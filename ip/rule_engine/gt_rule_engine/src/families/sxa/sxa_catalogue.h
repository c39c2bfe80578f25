#pragma once

#include "families/common/register_catalogue.h"

namespace sable_lanecfg {

/// The rules of the SXA family: every field of every register is constant.
const register_catalogue& sxaCatalogue();

}  // namespace sable_lanecfg
