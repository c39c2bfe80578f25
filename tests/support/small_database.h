#pragma once

#include "support/temporary_directory.h"

#include <nlohmann/json.hpp>

#include <string>

namespace lanecfg_test {

/// Paths of the four files that a request is loaded from.
struct DatabaseFiles {
    std::string userParameterTypes;
    std::string userParameters;
    std::string fields;
    std::string deviceData;
};

/// The smallest database and request that load without a message: one limit, a parameter and a
/// register of one field for each direction, and lane 0 with one rate both ways. A test changes
/// what it is about and then writes the files.
struct SmallDatabase {
    SmallDatabase();

    DatabaseFiles writeTo(const TemporaryDirectory& directory) const;

    nlohmann::json parameters;
    nlohmann::json request;
    nlohmann::json registers;
    nlohmann::json device;
};

}  // namespace lanecfg_test
