#pragma once

#include "packing/packing_faults.h"

#include <exception>

namespace sable_lanecfg {

/// The source file by which users know the services of the SXB family and of its relatives.
inline constexpr const char* sxbServiceSourceFile =
    "ip/rule_engine/gt_rule_engine/src/lane_cfg_sxb_instance";

/// Does the work of a service whose faults end here: the user is told, and what the service has
/// not set yet keeps its default.
template <class Work>
void catchServiceFaults(int line, const Work& work) {
    try {
        work();
    } catch (const std::exception& fault) {
        showFault(packingFaultFormat, fault, line, sxbServiceSourceFile);
    }
}

}  // namespace sable_lanecfg
