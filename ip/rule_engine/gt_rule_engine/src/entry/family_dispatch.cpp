#include "families/frozen/lane_cfg_sxb_instance_iter_stable.h"
#include "families/frozen/lane_cfg_sxd4_instance_iter_stable.h"
#include "families/sxa/lane_cfg_sxa_instance.h"
#include "families/sxb/lane_cfg_sxb_instance.h"
#include "families/sxc/lane_cfg_sxc_instance.h"
#include "families/sxd4/lane_cfg_sxd4_instance.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <utility>

namespace sable_lanecfg {

namespace {

/// Makes an instance of one family class; the arguments are those of its constructor.
template <class Frame>
using instanceMaker = Frame* (*)(const std::string&, const std::vector<channelUsageInfo>&,
                                 const std::map<std::string, quadsUsageInfo*>&,
                                 const std::map<std::string, paramTypeInfo>&, const userParamStore&,
                                 std::map<std::string, attributeInfo>,
                                 const std::map<std::string, std::vector<std::string>>&);

/// A family word and the class behind it.
template <class Frame>
struct familyClass {
    std::string_view word;
    instanceMaker<Frame> make;
};

template <class Frame, std::size_t Size>
using familyTable = std::array<familyClass<Frame>, Size>;

template <class Frame, class Family, class... Arguments>
Frame* make(Arguments... arguments) {
    return new Family(std::forward<Arguments>(arguments)...);
}

constexpr familyTable<lane_cfg_instance, 4> liveFamilies{
    {{"SXB", make<lane_cfg_instance, lane_cfg_sxb_instance>},
     {"SXA", make<lane_cfg_instance, lane_cfg_sxa_instance>},
     {"SXD4", make<lane_cfg_instance, lane_cfg_sxd4_instance>},
     {"SXC", make<lane_cfg_instance, lane_cfg_sxc_instance>}}};

constexpr familyTable<lane_cfg_instance_iter_stable, 2> stableFamilies{
    {{"SXB", make<lane_cfg_instance_iter_stable, lane_cfg_sxb_instance_iter_stable>},
     {"SXD4", make<lane_cfg_instance_iter_stable, lane_cfg_sxd4_instance_iter_stable>}}};

template <class Frame, std::size_t Size, class... Arguments>
Frame* makeFrom(const familyTable<Frame, Size>& families, const std::string& family,
                Arguments&&... arguments) {
    const auto* const found =
        std::find_if(families.begin(), families.end(),
                     [&family](const familyClass<Frame>& row) { return row.word == family; });
    return found == families.end() ? nullptr : found->make(std::forward<Arguments>(arguments)...);
}

}  // namespace

lane_cfg_instance* lane_cfg_ip_mgr::createLaneCfgInstance(
    const std::string& instanceName, const std::string& family,
    const std::vector<channelUsageInfo>& usage, const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& paramTypes, const userParamStore& userParams,
    std::map<std::string, attributeInfo> attributes,
    const std::map<std::string, std::vector<std::string>>& settings) {
    return makeFrom(liveFamilies, family, instanceName, usage, quads, paramTypes, userParams,
                    std::move(attributes), settings);
}

lane_cfg_instance_iter_stable* lane_cfg_ip_mgr::createLaneCfgIterStableInstance(
    const std::string& instanceName, const std::string& family,
    const std::vector<channelUsageInfo>& usage, const std::map<std::string, quadsUsageInfo*>& quads,
    const std::map<std::string, paramTypeInfo>& paramTypes, const userParamStore& userParams,
    std::map<std::string, attributeInfo> attributes,
    const std::map<std::string, std::vector<std::string>>& settings) {
    return makeFrom(stableFamilies, family, instanceName, usage, quads, paramTypes, userParams,
                    std::move(attributes), settings);
}

}  // namespace sable_lanecfg
