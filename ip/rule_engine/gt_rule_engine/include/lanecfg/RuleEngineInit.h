#pragma once

#include <lanecfg/export.h>

#include <string>

class ToolDRCModel;

/// What the library tells the host at its start. Doing it again changes nothing.
///
/// The class is global, as everything that the host calls; `sable_lanecfg` knows it too.
class LANECFG_EXPORT RuleEngineInit {
  public:
    /// Declares the tool parameter "gt.enableBlockAutomation", a flag that is off by default.
    static void registerParams();

    /// Registers who makes and who deletes the design-rule model of each IP, in the order
    /// "corvane:ip:sable_gt_subcore_ip:99.9", "corvane:ip:gt_subcore_ip:1.0" (both a
    /// ToolGTDRCModel), "corvane:ip:sxd_lane_cfg_brightspan:1.0" (a ToolSXD4DRCModel).
    static void init();
};

/// Called back by the host: makes the ToolGTDRCModel of a subcore and stores it in `*model`,
/// without a look at what was there before. A null `model` gets none.
LANECFG_EXPORT void gtRulesObjInit(std::string ipName, ToolDRCModel** model);
/// Called back by the host: deletes `*model`, unless it is null, and leaves the pointer as it is. A
/// null `model` is passed over.
LANECFG_EXPORT void gtRulesObjDelete(std::string ipName, ToolDRCModel** model);
/// As `gtRulesObjInit`, with the ToolSXD4DRCModel of an SXD4 transceiver.
LANECFG_EXPORT void sxdRulesObjInit(std::string ipName, ToolDRCModel** model);
/// As `gtRulesObjDelete`.
LANECFG_EXPORT void sxdRulesObjDelete(std::string ipName, ToolDRCModel** model);

/// The one entry that a host finds by name, for it to call after loading the library: declares the
/// parameter and registers the models. Arguments that a host passes are not looked at. Gives 0.
extern "C" LANECFG_EXPORT int Hostx_rule_engine_Init();

namespace sable_lanecfg {
using ::RuleEngineInit;
}
