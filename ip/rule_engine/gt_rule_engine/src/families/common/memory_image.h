#pragma once

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg {

/// Key of the rate table in every memory image. The firmware reads the table at this address.
constexpr const char* rateTableKey = "@00016000";

/// The firmware images that the library holds.
enum class MemoryImage {
    live,              ///< all families with the current rules but SXC
    liveEarlySilicon,  ///< the same for the first silicon revision
    sxc,
    frozen,  ///< all families with the frozen rules
};

/// Sections of an image without the rate table: text by key, "@" and the load address in eight
/// hexadecimal digits. Lines are two blanks and 32 bytes, each word or byte followed by a blank;
/// the last one may be shorter. The frozen image is in bytes, the others are in words.
std::map<std::string, std::string> memoryImageSections(MemoryImage image);

/// The image of `lane_cfg_instance` for the silicon revision in the settings, "siliconRev". Without
/// a revision it is not the one for early silicon.
MemoryImage liveMemoryImage(const std::map<std::string, std::vector<std::string>>& settings);

}  // namespace sable_lanecfg
