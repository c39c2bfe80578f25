#include "rate_table_rows.h"

#include "field_changes.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/format.hpp>

#include <bitset>

namespace sable_lanecfg::tool {
namespace {

std::string hexadecimalAddress(unsigned address) {
    return (boost::format("0x%03x") % address).str();
}

const char* formOf(const WriteGroup& group) {
    if (group.isBurst) {
        return "burst";
    }
    return group.writes.size() == 2 ? "pair" : "one";
}

WriteOverRates overRates(const RateBody& body, std::size_t group, std::size_t write) {
    WriteOverRates writes;
    for (const RateWrites& rate : body.rates) {
        writes.push_back(&rate.at(group).writes.at(write));
    }
    return writes;
}

std::string namesOf(const std::set<std::string>& names) {
    return boost::algorithm::join(names, " or ");
}

/// Changes are told where the address leads to one register.
std::string changesOf(const RateBody& body, std::size_t rate, std::size_t group, std::size_t write,
                      const ControllerRegisters& registers) {
    const std::set<std::string>& names =
        registers.namesAt(body.rates[rate][group].writes[write].address);
    static const std::map<std::string, std::vector<int>> noFields;
    return fieldChanges(overRates(body, group, write), rate,
                        names.size() == 1 ? registers.fieldsOf(*names.begin()) : noFields);
}

void addRows(const RateBody& body, std::size_t rate, const ControllerRegisters& registers,
             Table& rows) {
    const RateWrites& groups = body.rates[rate];
    for (std::size_t group = 0; group < groups.size(); ++group) {
        for (std::size_t index = 0; index < groups[group].writes.size(); ++index) {
            const RegisterWrite& write = groups[group].writes[index];
            const std::optional<unsigned> lane = groups[group].lane;
            rows.rows.push_back({Cell(body.channel), Cell(wordOf(body.direction)), Cell(rate),
                                 Cell(groups[group].position), Cell(formOf(groups[group])),
                                 Cell(lane ? Json(*lane) : Json()),
                                 Cell(hexadecimalAddress(write.address)),
                                 Cell(namesOf(registers.namesAt(write.address))),
                                 Cell(write.mask ? Json(hexadecimalWord(*write.mask)) : Json()),
                                 Cell(hexadecimalWord(write.value)),
                                 Cell(changesOf(body, rate, group, index, registers))});
        }
    }
}

std::vector<unsigned> membersOf(const ChannelSet& group) {
    std::vector<unsigned> members;
    for (unsigned channel = 0; channel < rateTableChannelCount; ++channel) {
        if (group.test(channel)) {
            members.push_back(channel);
        }
    }
    return members;
}

std::string groupText(const ChannelSet& group) {
    std::vector<std::string> numbers;
    for (const unsigned member : membersOf(group)) {
        numbers.push_back(std::to_string(member));
    }
    return boost::algorithm::join(numbers, " ");
}

std::string sideText(unsigned channel, const DirectionHeader& side, const std::string& label) {
    if (side.master != channel) {
        return label + " follows channel " + std::to_string(side.master);
    }
    return label + " " + std::to_string(side.rates) + " rates of " +
           std::to_string(side.blockSize) + " words from word " + std::to_string(side.offset) +
           " for channels " + groupText(side.group);
}

std::string lineOf(unsigned channel, const ChannelHeader& header) {
    const std::string name = "Channel " + std::to_string(channel) + ": ";
    if (!header.isPresent) {
        return name + "not in this quad";
    }
    const DirectionHeader& transmit = header.of(TableDirection::transmit);
    const std::string pcie = transmit.isPcie ? ", PCIe" : "";
    if (header.isDuplex) {
        return name + "duplex, " + sideText(channel, transmit, "TX and RX") + pcie;
    }
    return name + "simplex, " + sideText(channel, transmit, "TX") + ", " +
           sideText(channel, header.of(TableDirection::receive), "RX") + pcie;
}

Json sideDocument(const DirectionHeader& side) {
    return {{"master", side.master},
            {"group", membersOf(side.group)},
            {"rates", side.rates},
            {"block_size", side.blockSize},
            {"offset", side.offset}};
}

}  // namespace

std::string hexadecimalWord(std::uint32_t word) {
    return (boost::format("0x%08x") % word).str();
}

Table wordRows(const std::vector<std::uint32_t>& words) {
    Table table;
    table.columns = {"word", "hex", "digits"};
    for (std::size_t index = 0; index < words.size(); ++index) {
        table.rows.push_back({Cell(index), Cell(hexadecimalWord(words[index])),
                              Cell(std::bitset<32>(words[index]).to_string())});
    }
    return table;
}

Table writeRows(const DecodedRateTable& table, const ControllerRegisters& registers) {
    Table rows;
    rows.columns = {"channel", "direction", "rate", "word",  "group",  "lane",
                    "address", "register",  "mask", "value", "changes"};
    for (const RateBody& body : table.bodies) {
        for (std::size_t rate = 0; rate < body.rates.size(); ++rate) {
            addRows(body, rate, registers, rows);
        }
    }
    return rows;
}

std::vector<std::string> headerLines(const DecodedRateTable& table) {
    std::vector<std::string> lines;
    for (unsigned channel = 0; channel < rateTableChannelCount; ++channel) {
        lines.push_back(lineOf(channel, table.channels[channel]));
    }
    return lines;
}

Json headerDocument(const DecodedRateTable& table) {
    Json channels = Json::array();
    for (unsigned channel = 0; channel < rateTableChannelCount; ++channel) {
        const ChannelHeader& header = table.channels[channel];
        channels.push_back({{"channel", channel},
                            {"present", header.isPresent},
                            {"duplex", header.isDuplex},
                            {"pcie", header.of(TableDirection::transmit).isPcie},
                            {"tx", sideDocument(header.of(TableDirection::transmit))},
                            {"rx", sideDocument(header.of(TableDirection::receive))}});
    }
    return channels;
}

}  // namespace sable_lanecfg::tool
