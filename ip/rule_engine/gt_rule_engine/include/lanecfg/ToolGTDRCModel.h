#pragma once

#include <lanecfg/export.h>
#include <lanecfg/host/ToolDRCModel.h>

#include <string>

/// Design-rule model of the transceiver subcore: twelve update procedures that tell the host what
/// follows from an edit of the clocking parameters.
///
/// Procedures are named "update_PARAM_VALUE." and the parameter, values "PARAM_VALUE." and the
/// parameter. Line rates are in Gb/s, clocks in MHz; numbers are read in single precision. A value
/// that is missing or empty counts as its default, and only values that are there are written. A
/// text that is no number throws `boost::bad_lexical_cast`.
///
/// The class is global, as everything that the host calls; `sable_lanecfg` knows it too.
class LANECFG_EXPORT ToolGTDRCModel : public ToolDRCModel {
  public:
    /// Makes the model of an IP identifier, with its procedures registered.
    explicit ToolGTDRCModel(const std::string& ipName);
    ~ToolGTDRCModel() override;

    /// Registers the procedures; a second call changes nothing.
    void init() override;
};

namespace sable_lanecfg {
using ::ToolGTDRCModel;
}
