#include "database/quad_usage.h"

namespace sable_lanecfg {

std::unique_ptr<quadsUsageInfo> makeQuadUsage() {
    return std::make_unique<quadsUsageInfo>();
}

void enterQuadUsage(std::map<std::string, quadsUsageInfo*>& quads,
                    std::unique_ptr<quadsUsageInfo> quad) {
    const bool isNew = quads.emplace(quad->quadName, quad.get()).second;
    if (isNew) {
        static_cast<void>(quad.release());  // from here on it lives for whoever copies the map
    }
}

}  // namespace sable_lanecfg
