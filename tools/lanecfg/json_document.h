#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// A JSON file as read.
struct JsonDocument {
    nlohmann::json root;
    /// Keys that stand more than once in their object, as paths; the last value is in `root`.
    std::vector<std::string> repeatedKeys;
};

/// What to keep of the lists in a document.
enum class Lists { whole, abridged };

/// Reads a JSON file, stored plain, gzipped or zlib packed. `Lists::abridged` keeps of each
/// list only a null in place of all its elements, so that a large one costs no memory but is still
/// told from an empty one. Throws RequestError, naming the file and the place of the fault, when
/// the file can't be read, is not JSON, is nested deeper than 256 levels or holds more than a
/// million values.
JsonDocument readJsonDocument(const std::string& file, Lists lists);

}  // namespace sable_lanecfg::tool
