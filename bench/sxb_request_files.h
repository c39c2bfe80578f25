#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace lanecfg_bench {

/// A request for four lanes of SXB at several rates, as a file that lives as long as this.
class SxbRequestFile {
  public:
    explicit SxbRequestFile(std::size_t rates);
    ~SxbRequestFile();
    SxbRequestFile(const SxbRequestFile&) = delete;
    SxbRequestFile& operator=(const SxbRequestFile&) = delete;

    /// Parameter types, request, fields and device data, in the order of the manager's arguments.
    std::array<std::string, 4> files() const;

  private:
    std::string path_;
};

/// Hands the files of a request to the manager.
void initialise(const std::array<std::string, 4>& files);

/// Runs a whole request, from its files to the attributes. False when it has no answer.
bool runRequest(const std::array<std::string, 4>& files);

}  // namespace lanecfg_bench
