#include <lanecfg/gt_quad_packing.h>

namespace sable_lanecfg {

gt_quad_packing::gt_quad_packing(const std::vector<channelUsageInfo>& channelUsage,
                                 const std::map<std::string, paramTypeInfo>& types,
                                 const userParamStore& parameters,
                                 const std::map<std::string, attributeInfo>& fields,
                                 const std::map<std::string, std::vector<std::string>>& limits)
    : channels(channelUsage),
      userParams(parameters),
      attributes(fields),
      deviceLimits(limits),
      paramTypes(types) {}

packingTable<std::map<std::string, packingNumbers>> gt_quad_packing::getIntersectedCoordinates()
    const {
    return intersectedCoordinates;
}

packingTable<std::map<std::string, packingTexts>>
gt_quad_packing::getRefclkSourceIntersectedCoordinates() const {
    return refclkSourceIntersectedCoordinates;
}

}  // namespace sable_lanecfg
