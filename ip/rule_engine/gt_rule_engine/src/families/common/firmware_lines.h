#pragma once

#include <string_view>

namespace sable_lanecfg::firmware {

/// The lines of a firmware image: the key of a section, without a line feed, and then the lines of
/// its text, each with its line feed.
struct FirmwareLines {
    const std::string_view* first;
    const std::string_view* last;  ///< behind the last line
};

// The build makes these from data/firmware/.
extern const FirmwareLines live;
extern const FirmwareLines live_early_silicon;
extern const FirmwareLines sxc;
extern const FirmwareLines frozen;

}  // namespace sable_lanecfg::firmware
