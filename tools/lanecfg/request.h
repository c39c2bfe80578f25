#pragma once

#include "families.h"

#include <lanecfg/gt_db_load.h>

#include <string>

namespace CLI {
class App;
}

namespace sable_lanecfg::tool {

/// What the command line says about a request; non-empty words override those of the file.
struct RequestOptions {
    std::string file;
    std::string family;
    std::string selector;
    std::string part;
    std::string database;
};

/// Gives a subcommand the request file and the options --family, --selector, --part, --database.
void addRequestOptions(CLI::App& command, RequestOptions& options);

/// The host's dictionaries, as a request in the dictionary form holds them.
struct RequestDictionaries {
    textMap options;
    laneUsageMap laneUsage;
    quadUsageMap quadUsage;
    userParamMap userParams;
};

/// A request as far as the program needs it. In the file form the library reads the file itself.
struct Request {
    std::string file;
    const RuleSet* rules = nullptr;  ///< never null in a request that was read
    std::string description;
    bool isDictionaryForm = false;
    std::string part;                  ///< dictionary form only
    RequestDictionaries dictionaries;  ///< dictionary form only
};

/// Reads a request. Throws RequestError when the file can't be read or a key is at fault, and
/// UsageError when the request and the options together miss the family, or give a part name to
/// the file form.
Request readRequest(const RequestOptions& options);

}  // namespace sable_lanecfg::tool
