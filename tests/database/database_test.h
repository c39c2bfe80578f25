#pragma once

#include "support/captured_messages.h"
#include "support/loader_messages.h"
#include "support/print_rule_value.h"
#include "support/small_database.h"
#include "support/temporary_directory.h"

#include <lanecfg/gt_db_load.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {

/// Loads small databases with all messages caught, and frees the records of quads at the end,
/// since the loader hands them to nobody.
class DatabaseTest : public testing::Test {
  protected:
    ~DatabaseTest() override;

    /// Loads `database` and its request.
    sable_lanecfg::gt_db_load load(const std::string& partName = "");
    /// Loads `database` and the dictionary form of a request.
    sable_lanecfg::gt_db_load loadDictionary(const sable_lanecfg::userParamMap& userParams,
                                             const std::string& partName = "");
    /// Loads the four files as they stand.
    sable_lanecfg::gt_db_load loadFiles(const DatabaseFiles& files);

    /// Reads the file form of a request into a loader.
    bool readRequest(sable_lanecfg::gt_db_load& loader, const std::string& file);
    /// Reads the dictionary form of a request into a loader; no family, no options.
    bool readRequest(sable_lanecfg::gt_db_load& loader,
                     const sable_lanecfg::userParamMap& userParams,
                     const sable_lanecfg::laneUsageMap& laneUsage,
                     const sable_lanecfg::quadUsageMap& quadUsage, const std::string& family = "");

    /// Finished texts of the errors since the last call.
    std::vector<std::string> errors();

    TemporaryDirectory directory;
    SmallDatabase database;
    CapturedMessages messages;

  private:
    void keep(const sable_lanecfg::gt_db_load& loader);

    std::vector<const sable_lanecfg::quadsUsageInfo*> records_;
    std::size_t errorsSeen_ = 0;
};

}  // namespace lanecfg_test
