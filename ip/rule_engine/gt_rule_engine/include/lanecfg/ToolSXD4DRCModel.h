#pragma once

#include <lanecfg/export.h>
#include <lanecfg/host/ToolDRCModel.h>

#include <string>

/// Design-rule model of the SXD4 transceiver: eight update procedures that tell the host what
/// follows from an edit of the clocking parameters.
///
/// Both directions share a reference clock, and a line is PAM4, with two bits in a symbol, unless
/// it says otherwise. Names, units and missing values are as in `ToolGTDRCModel`; numbers are read
/// in double precision.
class LANECFG_EXPORT ToolSXD4DRCModel : public ToolDRCModel {
  public:
    /// Makes the model of an IP identifier, with its procedures registered.
    explicit ToolSXD4DRCModel(const std::string& ipName);
    ~ToolSXD4DRCModel() override;

    /// Registers the procedures; a second call changes nothing.
    void init() override;
};

namespace sable_lanecfg {
using ::ToolSXD4DRCModel;
}
