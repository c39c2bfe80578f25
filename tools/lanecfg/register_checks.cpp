#include "register_checks.h"

#include <lanecfg/gt_rule_engine.h>

#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <array>
#include <charconv>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

constexpr int wordBits = 32;

enum class BlockTypePlace { unknown, withoutKey, known };

/// What the block model makes of a block type, found by asking for the attributes of a quad with
/// one register of that type.
BlockTypePlace placeOfBlockType(const std::string& type) {
    const std::string name = "REGISTER";
    gt_rule_engine engine("", {}, {}, {}, {{name, {type, {}, "0"}}}, {});
    const ruleValue firstRate = 0U;
    engine.blockVarMap = {{{{"TX", {boost::none, firstRate}},
                            {"RX", {boost::none, firstRate}},
                            {name, {boost::none, 1U}}}}};
    try {
        return engine.getAttribMap().count("") == 0 ? BlockTypePlace::known
                                                    : BlockTypePlace::withoutKey;
    } catch (const std::invalid_argument&) {
        return BlockTypePlace::unknown;
    }
}

/// Text of a text or number, as the library's loader takes either; none for anything else.
std::optional<std::string> scalarText(const nlohmann::json& record, const char* key) {
    const auto found = record.find(key);
    if (found == record.end() || found->is_structured() || found->is_null()) {
        return std::nullopt;
    }
    return found->is_string() ? found->get<std::string>() : found->dump();
}

std::optional<int> integer(const nlohmann::json& element) {
    const std::string text = element.is_string() ? element.get<std::string>() : element.dump();
    int number = 0;
    if (!boost::conversion::try_lexical_convert(text, number)) {
        return std::nullopt;
    }
    return number;
}

std::optional<unsigned long> hexadecimal(const std::string& text) {
    const bool hasPrefix = text.rfind("0x", 0) == 0 || text.rfind("0X", 0) == 0;
    const char* const begin = text.data() + (hasPrefix ? 2 : 0);
    const char* const end = text.data() + text.size();
    unsigned long number = 0;
    const std::from_chars_result result = std::from_chars(begin, end, number, 16);
    if (begin == end || result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return number;
}

/// Where a field lies in its word.
struct FieldPlace {
    int offset;
    int width;
};

/// Enters the reset enables of a channel: groups of bits at fixed distances from channel to
/// channel, which a master copies from its own channel to those that follow it.
void enterResetEnables(int channel, std::map<std::string, FieldPlace>& places) {
    const std::string inChannel = "CH" + std::to_string(channel) + "_";
    const std::string master = "MST_RESET_CFG." + inChannel;
    const int group = 8 + 5 * channel;
    places[master + "LCPLL_RESET_EN"] = {channel, 1};
    places[master + "RPLL_RESET_EN"] = {4 + channel, 1};
    places[master + "ILO_RESET_EN"] = {group, 1};
    places[master + "TX_PROGDIV_RESET_EN"] = {group + 1, 1};
    places[master + "TX_CH_RESET_EN"] = {group + 2, 1};
    places[master + "RX_PROGDIV_RESET_EN"] = {group + 3, 1};
    places[master + "RX_CH_RESET_EN"] = {group + 4, 1};
    places[master + "RX_LCPLL_RESET_EN"] = {28 + channel, 1};
    places["CTRL_RSV_CFG0." + inChannel + "RX_RPLL_RESET_EN"] = {28 + channel, 1};
}

/// Fields on whose places the arithmetic of the rate table depends, by their whole name.
std::map<std::string, FieldPlace> makeFixedPlaces() {
    std::map<std::string, FieldPlace> places = {
        // A rate change always writes both under the masks 0x7007 and 0x7000.
        {"PIPE_CTRL_CFG7.TXOUTCLKCTL", {0, 3}},
        {"PIPE_CTRL_CFG7.RXOUTCLKCTL", {12, 3}},
        // The low half belongs to dual 0 and is copied to the high half, that of dual 1.
        {"A_CFG1.A_HS0_LCPLLFBDIV", {0, 8}},
        {"A_CFG1.A_HS0_RPLLFBDIV", {8, 8}},
        {"A_CFG1.A_HS1_LCPLLFBDIV", {16, 8}},
        {"A_CFG1.A_HS1_RPLLFBDIV", {24, 8}},
    };
    constexpr int channelsOfQuad = 4;
    for (int channel = 0; channel < channelsOfQuad; ++channel) {
        enterResetEnables(channel, places);
    }
    return places;
}

/// Checks the registers one after the other, remembering what must be distinct.
class RegisterCheck {
  public:
    explicit RegisterCheck(FindingList& findings) : findings_(findings) {}

    void check(const std::string& name, const nlohmann::json& record) {
        ++counts_.registers;
        if (!record.is_object()) {
            findings_.error(name,
                            "The register must be an object with \"dstSubBlock\", "
                            "\"Offset\" and \"fields\".");
            return;
        }
        const std::optional<std::string> type = checkBlockType(name, record);
        checkOffset(name, record, type.value_or(""));
        checkFields(name, record);
    }

    const RegisterCounts& counts() const { return counts_; }

  private:
    std::optional<std::string> checkBlockType(const std::string& name,
                                              const nlohmann::json& record) {
        const std::optional<std::string> type = scalarText(record, "dstSubBlock");
        if (!type) {
            findings_.error(name,
                            "\"dstSubBlock\" is missing or no text; it names the block type "
                            "that holds the register.");
            return type;
        }
        const BlockTypePlace place = blockTypePlace(*type);
        if (place == BlockTypePlace::unknown) {
            findings_.error(name, "The block type \"" + *type +
                                      "\" is unknown to the block model, "
                                      "so attributes can't be listed.");
        } else if (place == BlockTypePlace::withoutKey) {
            findings_.warning(name, "Attributes have no name for registers of the block type \"" +
                                        *type + "\"; all of them come under the empty name.");
        }
        return type;
    }

    BlockTypePlace blockTypePlace(const std::string& type) {
        const auto known = blockTypePlaces_.find(type);
        return known != blockTypePlaces_.end()
                   ? known->second
                   : blockTypePlaces_.emplace(type, placeOfBlockType(type)).first->second;
    }

    void checkOffset(const std::string& name, const nlohmann::json& record,
                     const std::string& type) {
        const std::optional<std::string> text = scalarText(record, "Offset");
        if (!text) {
            findings_.error(name,
                            "\"Offset\" is missing or neither text nor number; it is the "
                            "register's offset in words, hexadecimal.");
            return;
        }
        const std::optional<unsigned long> offset = hexadecimal(*text);
        if (!offset) {
            findings_.error(name, "The offset \"" + *text + "\" is not hexadecimal.");
            return;
        }
        const auto [other, isFirst] = registerAt_.emplace(std::pair(type, *offset), name);
        if (!isFirst) {
            findings_.error(name, "The offset \"" + *text + "\" of block type \"" + type +
                                      "\" is that of " + other->second + " too.");
        }
    }

    void checkFields(const std::string& name, const nlohmann::json& record) {
        const auto fields = record.find("fields");
        if (fields == record.end() || !fields->is_object()) {
            findings_.error(name,
                            "\"fields\" is missing or no object; it maps field names to "
                            "[bit offset, width].");
            return;
        }
        std::array<std::string, wordBits> fieldAt;
        for (const auto& [field, numbers] : fields->items()) {
            ++counts_.fields;
            if (field.rfind(name + ".", 0) != 0) {
                findings_.error(field, "The name of this field of " + name + " must begin with \"" +
                                           name + ".\", as rules call it so.");
            }
            checkBits(field, numbers, fieldAt);
        }
    }

    void checkBits(const std::string& field, const nlohmann::json& numbers,
                   std::array<std::string, wordBits>& fieldAt) {
        if (!numbers.is_array() || numbers.size() != 2) {
            findings_.error(field, "The field has " +
                                       std::to_string(numbers.is_array() ? numbers.size() : 0) +
                                       " numbers, where it needs two: [bit offset, width].");
            return;
        }
        const std::optional<int> offset = integer(numbers[0]);
        const std::optional<int> width = integer(numbers[1]);
        if (!offset || !width) {
            findings_.error(field, "Bit offset and width must be whole numbers.");
        } else if (*offset < 0 || *width < 1 || *offset >= wordBits ||
                   *width > wordBits - *offset) {
            findings_.error(field, "The field of bit offset " + std::to_string(*offset) +
                                       " and width " + std::to_string(*width) +
                                       " does not fit a word of 32 bits.");
        } else {
            occupy(field, *offset, *width, fieldAt);
            checkFixedPlace(field, *offset, *width);
        }
    }

    void checkFixedPlace(const std::string& field, int offset, int width) {
        const auto fixed = fixedPlaces_.find(field);
        if (fixed == fixedPlaces_.end()) {
            return;
        }
        const FieldPlace& place = fixed->second;
        if (offset != place.offset || width != place.width) {
            findings_.error(field, "The field must have bit offset " +
                                       std::to_string(place.offset) + " and width " +
                                       std::to_string(place.width) +
                                       ", where the rate table counts on it.");
        }
    }

    void occupy(const std::string& field, int offset, int width,
                std::array<std::string, wordBits>& fieldAt) {
        for (int bit = offset; bit < offset + width; ++bit) {
            std::string& occupant = fieldAt[static_cast<std::size_t>(bit)];
            if (!occupant.empty()) {
                findings_.error(field, "The field overlaps " + occupant + " at bit " +
                                           std::to_string(bit) + ".");
                return;
            }
            occupant = field;
        }
    }

    FindingList& findings_;
    RegisterCounts counts_;
    const std::map<std::string, FieldPlace> fixedPlaces_ = makeFixedPlaces();
    std::map<std::string, BlockTypePlace> blockTypePlaces_;
    std::map<std::pair<std::string, unsigned long>, std::string> registerAt_;
};

}  // namespace

RegisterCounts checkRegisters(const nlohmann::json& root, FindingList& findings) {
    if (!root.is_object()) {
        findings.error("", "The file must be an object with a member for each register.");
        return {};
    }
    RegisterCheck check(findings);
    for (const auto& [name, record] : root.items()) {
        check.check(name, record);
    }
    return check.counts();
}

}  // namespace sable_lanecfg::tool
