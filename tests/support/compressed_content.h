#pragma once

#include <string>

namespace lanecfg_test {

std::string gzipped(const std::string& content);

/// `level` 0 to 9; `windowBits` 9 to 15, the width of the window that the header tells.
std::string zlibCompressed(const std::string& content, int level = 6, int windowBits = 15);

/// Text of `size` random bytes, which hardly gets shorter by compression.
std::string incompressible(std::size_t size, unsigned seed);

}  // namespace lanecfg_test
