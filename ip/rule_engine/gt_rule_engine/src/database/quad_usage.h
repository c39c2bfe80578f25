#pragma once

#include <lanecfg/gt_db_load.h>

#include <map>
#include <memory>
#include <string>

namespace sable_lanecfg {

/// A fresh record of a quad. All of them are made here, so that those that live to the end of the
/// process can be told from leaks by this name.
std::unique_ptr<quadsUsageInfo> makeQuadUsage();

/// Enters the record under its quad name. The first record of a name stays; a later one is freed.
/// An entered record belongs to nobody: instances point to it for as long as they live.
void enterQuadUsage(std::map<std::string, quadsUsageInfo*>& quads,
                    std::unique_ptr<quadsUsageInfo> quad);

}  // namespace sable_lanecfg
