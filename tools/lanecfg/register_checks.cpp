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
