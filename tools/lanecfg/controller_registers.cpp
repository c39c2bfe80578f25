#include "controller_registers.h"

#include "block/block_tables.h"

#include <boost/algorithm/string/predicate.hpp>

#include <stdexcept>

namespace sable_lanecfg::tool {
namespace {

using boost::algorithm::starts_with;
using BlockOffsets = std::map<std::string, std::vector<int>>;

/// The row of the block offsets that a type is looked up in, and the place in the row. A type that
/// is not known has no row, and stands at its bare offset.
struct BlockIndex {
    std::string row;
    unsigned index = 0;
};

BlockIndex blockIndexOf(const std::string& type, unsigned channel) {
    if (starts_with(type, "ch")) {
        return {"CH", channel};
    }
    if (starts_with(type, "hs")) {
        return {type, channel / 2};
    }
    if (starts_with(type, "ctrl")) {
        return {type, 0};
    }
    if (starts_with(type, "rcalbg")) {
        return {type, channel};
    }
    return {};
}

std::optional<int> blockOffset(const BlockOffsets& offsets, const BlockIndex& block) {
    if (block.row.empty()) {
        return 0;
    }
    const auto row = offsets.find(block.row);
    if (row == offsets.end() || block.index >= row->second.size()) {
        return std::nullopt;
    }
    return row->second[block.index];
}

std::optional<RegisterPlace> placeIn(const BlockOffsets& offsets, const attributeInfo& info,
                                     unsigned channel) {
    const std::string& type = info.dstSubBlock;
    const BlockIndex block = blockIndexOf(type, channel);
    const std::optional<unsigned long> offset = offsetOf(info);
    const std::optional<int> base = blockOffset(offsets, block);
    if (isPortType(type) || !offset || !base) {
        return std::nullopt;
    }
    const unsigned long address = *offset + static_cast<unsigned long>(*base);
    return RegisterPlace{static_cast<unsigned>(address % rateTableAddresses),
                         starts_with(type, "ch")};
}

}  // namespace

std::optional<unsigned long> offsetOf(const attributeInfo& info) {
    try {
        return std::stoul(info.Offset, nullptr, 16);
    } catch (const std::logic_error&) {
        return std::nullopt;
    }
}

bool isPortType(const std::string& type) {
    return blockIndexOf(type, 0).row.empty() && boost::algorithm::contains(type, "PORT");
}

ControllerRegisters::ControllerRegisters(const std::map<std::string, attributeInfo>& registers) {
    const BlockOffsets offsets = block_tables::blockOffsets();
    for (const auto& [name, info] : registers) {
        fields_[name] = info.fields;
        PlacesByChannel& places = places_[name];
        for (unsigned channel = 0; channel < rateTableChannelCount; ++channel) {
            places[channel] = placeIn(offsets, info, channel);
            if (places[channel]) {
                names_[places[channel]->address].insert(name);
            }
        }
    }
}

std::optional<RegisterPlace> ControllerRegisters::placeOf(const std::string& name,
                                                          unsigned channel) const {
    const auto found = places_.find(name);
    return found == places_.end() ? std::nullopt : found->second.at(channel);
}

const std::set<std::string>& ControllerRegisters::namesAt(unsigned address) const {
    static const std::set<std::string> none;
    const auto found = names_.find(address);
    return found == names_.end() ? none : found->second;
}

const std::map<std::string, std::vector<int>>& ControllerRegisters::fieldsOf(
    const std::string& name) const {
    static const std::map<std::string, std::vector<int>> none;
    const auto found = fields_.find(name);
    return found == fields_.end() ? none : found->second;
}

}  // namespace sable_lanecfg::tool
