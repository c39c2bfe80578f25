#pragma once

#include <lanecfg/gt_db_load.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>
#include <vector>

namespace lanecfg_test {

/// The folder data/ of the checkout.
std::filesystem::path dataFolder();

/// Names of the folders of the reference database, one for each rule set.
std::vector<std::string> referenceFamilies();

/// Path of a file of a family in the reference database.
std::string referencePath(const std::string& family, const std::string& file);

/// Parsed content of a file of a family in the reference database.
nlohmann::json referenceFile(const std::string& family, const std::string& file);

/// The reference database of a family as the library loads it, with a request that gives no lane.
sable_lanecfg::gt_db_load referenceDatabase(const std::string& family);

/// Names of the bundled requests, without folder and ending.
std::vector<std::string> bundledRequests();

/// Names of the bundled requests that are about quad packing. Not all of them fit a quad.
std::vector<std::string> packRequests();

/// Path of a bundled request.
std::string requestPath(const std::string& name);

/// Path of the page that explains a bundled request.
std::string requestPagePath(const std::string& name);

/// Parsed content of a bundled request.
nlohmann::json bundledRequest(const std::string& name);

/// True for a request of dictionaries, false for one in file form.
bool isDictionaryForm(const nlohmann::json& request);

/// Name of the folder of the reference database that a request needs: that of its family, or one of
/// its own for the request's selector.
std::string databaseOf(const nlohmann::json& request);

/// Hands a bundled request with its family, selector and part to the manager, against the
/// reference database.
void initialiseBundledRequest(const std::string& instanceName, const std::string& request);

}  // namespace lanecfg_test
