#pragma once

#include <filesystem>
#include <string>

namespace sable_lanecfg::tool {

/// Writes a file whole or not at all: readers see the old content or the new one, and after a
/// fault the old one is untouched. A link keeps pointing to the file that is replaced or made; a
/// target that is no regular file, such as /dev/null, is written in place.
/// Throws RequestError, naming the file and the reason.
void writeWholeFile(const std::filesystem::path& file, const std::string& content);

}  // namespace sable_lanecfg::tool
