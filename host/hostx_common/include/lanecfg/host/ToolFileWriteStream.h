#pragma once

#include <fstream>
#include <ios>
#include <string>

/// Output stream on a file. When the file can't be opened the stream is in its failed state, and
/// what is written to it is dropped.
class ToolFileWriteStream : public std::ofstream {
  public:
    /// `std::ios_base::out` alone empties the file first.
    explicit ToolFileWriteStream(const std::string& path,
                                 std::ios_base::openmode mode = std::ios_base::out);
};
