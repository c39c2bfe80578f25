#pragma once

#include "rate_table_decoder.h"

#include <lanecfg/gt_db_load.h>

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// Where the embedded controller finds a register of a channel.
struct RegisterPlace {
    unsigned address = 0;   ///< word address in the controller's ten bit range
    bool isOfLane = false;  ///< each lane has one at this address, instead of all sharing it
};

/// The offset as the library reads it: the hexadecimal number with which the text begins, none
/// where it begins with none.
std::optional<unsigned long> offsetOf(const attributeInfo& info);

/// Whether registers of a block type are ports, which have no address.
bool isPortType(const std::string& type);

/// The registers of a database by the addresses that the embedded controller has for them.
class ControllerRegisters {
  public:
    explicit ControllerRegisters(const std::map<std::string, attributeInfo>& registers);

    /// Place of a channel's register; none for a port, for a register that the database lacks or
    /// whose offset is no number, and for a block that the channel does not have.
    std::optional<RegisterPlace> placeOf(const std::string& name, unsigned channel) const;

    /// The registers at an address, in name order; one, if the database is sound.
    const std::set<std::string>& namesAt(unsigned address) const;

    /// Fields of a register: their bit offset and width by name.
    const std::map<std::string, std::vector<int>>& fieldsOf(const std::string& name) const;

  private:
    using PlacesByChannel = std::array<std::optional<RegisterPlace>, rateTableChannelCount>;

    std::map<std::string, PlacesByChannel> places_;
    std::map<std::string, std::map<std::string, std::vector<int>>> fields_;
    std::map<unsigned, std::set<std::string>> names_;
};

}  // namespace sable_lanecfg::tool
