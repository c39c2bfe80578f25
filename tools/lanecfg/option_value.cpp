#include "option_value.h"

namespace sable_lanecfg::tool {

std::string emptyValueFault(const std::string& value) {
    return value.empty() ? "the value is empty; give one, or leave the option out" : std::string();
}

}  // namespace sable_lanecfg::tool
