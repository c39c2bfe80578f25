#include "families/common/family_catalogues.h"
#include "support/reference_data.h"

#include <lanecfg/family_rules.h>
#include <lanecfg/gt_rule_engine.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::referenceFamilies;
using lanecfg_test::referenceFile;
using nlohmann::json;
using testing::AnyOf;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr int wordBits = 32;

/// Bits that a field takes of its word.
std::bitset<wordBits> bitsOf(const json& place) {
    std::bitset<wordBits> bits;
    const int offset = place.at(0).get<int>();
    for (int bit = offset; bit < std::min(offset + place.at(1).get<int>(), wordBits); ++bit) {
        bits.set(static_cast<std::size_t>(bit));
    }
    return bits;
}

/// A port is no register: rules give it its value as a whole.
bool isPort(const json& row) {
    return row.at("dstSubBlock") == "CH_PORT";
}

class ReferenceDatabase : public testing::TestWithParam<std::string> {
  protected:
    const json registers = referenceFile(GetParam(), "registers.json");
    const json parameters = referenceFile(GetParam(), "parameters.json");
    const json device = referenceFile(GetParam(), "device.json");

    const register_catalogue& catalogue() const {
        const auto& all = familyCatalogues();
        return std::find_if(all.begin(), all.end(),
                            [](const auto& row) { return row.family == GetParam(); })
            ->catalogue();
    }
};

TEST_P(ReferenceDatabase, PlacesEveryRegisterAndFieldThatARuleWritesAndNoOther) {
    std::map<std::string, std::set<std::string>> written;
    for (const catalogueEntry& entry : catalogue().entries()) {
        if (entry.kind == entryKind::step) {
            continue;
        }
        auto& fields = written[std::string(entry.name)];
        for (const registerField& field : entry.fields) {
            fields.insert(fieldName(entry.name, field.name));
        }
    }
    std::map<std::string, std::set<std::string>> placed;
    for (const auto& [name, row] : registers.items()) {
        if (isPort(row)) {
            continue;
        }
        auto& fields = placed[name];
        for (const auto& field : row.at("fields").items()) {
            fields.insert(field.key());
        }
    }
    EXPECT_EQ(placed, written);
}

TEST_P(ReferenceDatabase, PortsAreWrittenByARuleAndHaveNoFields) {
    std::set<std::string> written;
    for (const ruleDescription& rule : rulesOfFamily(GetParam(), "live")) {
        written.insert(rule.outputs.begin(), rule.outputs.end());
    }
    for (const auto& [name, row] : registers.items()) {
        if (isPort(row)) {
            EXPECT_EQ(written.count(name), 1U) << name;
            EXPECT_TRUE(row.at("fields").empty()) << name;
        }
    }
}

TEST_P(ReferenceDatabase, FieldsLieInsideTheWordAndDoNotOverlap) {
    for (const auto& [name, row] : registers.items()) {
        std::bitset<wordBits> taken;
        for (const auto& [field, place] : row.at("fields").items()) {
            ASSERT_EQ(place.size(), 2U) << field;
            EXPECT_GE(place[0].get<int>(), 0) << field;
            EXPECT_GE(place[1].get<int>(), 1) << field;
            EXPECT_LE(place[0].get<int>() + place[1].get<int>(), wordBits) << field;
            EXPECT_THAT(field, StartsWith(name + "."));
            EXPECT_TRUE((taken & bitsOf(place)).none()) << field << " overlaps another field";
            taken |= bitsOf(place);
        }
    }
}

TEST_P(ReferenceDatabase, ConstantsFitTheirFieldUnlessTheirRegisterIsFull) {
    for (const catalogueEntry& entry : catalogue().entries()) {
        for (const registerField& field : entry.fields) {
            const std::string name = fieldName(entry.name, field.name);
            const json& fields = registers.at(std::string(entry.name)).at("fields");
            const int width = fields.at(name).at(1).get<int>();
            if (field.kind != fieldKind::constant || field.value >> (width - 1) <= 1) {
                continue;
            }
            // A field that is too narrow is only tolerable where no bit is left to widen it.
            int taken = 0;
            for (const json& place : fields) {
                taken += place.at(1).get<int>();
            }
            EXPECT_EQ(taken, wordBits) << name;
        }
    }
}

TEST_P(ReferenceDatabase, BlockTypesAreKnownToTheBlockModel) {
    // Types under which the block model looks up spans, offsets and bases.
    const std::set<std::string> known{
        "channel",  "hs_clk_0", "hs_clk_1", "hs_clk_2", "hs_clk_3", "hs_clk_4", "hs_clk_ips",
        "ctrl_0",   "ctrl_1",   "ctrl_2",   "ctrl_3",   "ctrl_4",   "ctrl_5",   "rcalbg",
        "rcalbg_0", "rcalbg_1", "rcalbg_2", "rcalbg_3", "rcalbg_4", "rcalbg_5", "CH_PORT"};
    for (const auto& [name, row] : registers.items()) {
        EXPECT_EQ(known.count(row.at("dstSubBlock").get<std::string>()), 1U) << name;
    }
}

TEST_P(ReferenceDatabase, EveryRegisterHasAPrefixInTheRateTable) {
    std::map<std::string, attributeInfo> attributes;
    for (const auto& [name, row] : registers.items()) {
        if (isPort(row)) {
            continue;
        }
        attributes[name] = {row.at("dstSubBlock").get<std::string>(), {}, ""};
    }
    gt_rule_engine engine(GetParam(), {}, {}, {}, attributes, {});
    for (const auto& entry : attributes) {
        EXPECT_THAT(engine.getPrefix(entry.first, 3), AnyOf("CH_3_", "HS_1_", "CTRL_", "RCAL_"))
            << entry.first;
    }
}

TEST_P(ReferenceDatabase, OffsetsAreHexadecimalDistinctAndBelowTheNextBlock) {
    std::set<unsigned long> offsets;
    for (const auto& [name, row] : registers.items()) {
        const auto text = row.at("Offset").get<std::string>();
        EXPECT_THAT(text, MatchesRegex("0x[0-9A-F]+"));
        const unsigned long offset = std::stoul(text, nullptr, 16);
        EXPECT_LT(offset, 0x100UL) << name;
        EXPECT_TRUE(offsets.insert(offset).second) << name << " shares offset " << text;
    }
}

TEST_P(ReferenceDatabase, FieldsOnWhichTheRateTableCountsAreWhereItCountsOnThem) {
    const auto expectPlace = [this](const std::string& registerName, const std::string& field,
                                    std::vector<int> place) {
        const std::string name = registerName + "." + field;
        const std::vector<registerField> written = catalogue().fieldsOf(registerName);
        const bool isWritten = std::any_of(written.begin(), written.end(),
                                           [&](const auto& row) { return row.name == field; });
        const json fields =
            registers.value(registerName, json::object()).value("fields", json::object());
        // A family places the fields that its rules write, and has no others.
        ASSERT_EQ(fields.contains(name), isWritten) << name;
        if (isWritten) {
            EXPECT_EQ(fields.at(name).get<std::vector<int>>(), place) << name;
        }
    };
    expectPlace("PIPE_CTRL_CFG7", "TXOUTCLKCTL", {0, 3});
    expectPlace("PIPE_CTRL_CFG7", "RXOUTCLKCTL", {12, 3});
    expectPlace("A_CFG1", "A_HS0_LCPLLFBDIV", {0, 8});
    expectPlace("A_CFG1", "A_HS0_RPLLFBDIV", {8, 8});
    expectPlace("A_CFG1", "A_HS1_LCPLLFBDIV", {16, 8});
    expectPlace("A_CFG1", "A_HS1_RPLLFBDIV", {24, 8});
    for (int channel = 0; channel < 4; ++channel) {
        const std::string prefix = "CH" + std::to_string(channel) + "_";
        expectPlace("MST_RESET_CFG", prefix + "LCPLL_RESET_EN", {channel, 1});
        expectPlace("MST_RESET_CFG", prefix + "RPLL_RESET_EN", {4 + channel, 1});
        expectPlace("MST_RESET_CFG", prefix + "ILO_RESET_EN", {8 + 5 * channel, 1});
        expectPlace("MST_RESET_CFG", prefix + "TX_PROGDIV_RESET_EN", {9 + 5 * channel, 1});
        expectPlace("MST_RESET_CFG", prefix + "TX_CH_RESET_EN", {10 + 5 * channel, 1});
        expectPlace("MST_RESET_CFG", prefix + "RX_PROGDIV_RESET_EN", {11 + 5 * channel, 1});
        expectPlace("MST_RESET_CFG", prefix + "RX_CH_RESET_EN", {12 + 5 * channel, 1});
        expectPlace("MST_RESET_CFG", prefix + "RX_LCPLL_RESET_EN", {28 + channel, 1});
        expectPlace("CTRL_RSV_CFG0", prefix + "RX_RPLL_RESET_EN", {28 + channel, 1});
    }
}

TEST_P(ReferenceDatabase, ParametersHaveATypeADescriptionAndADefaultOfTheType) {
    const std::map<std::string, std::string> defaultForm{{"int", "[0-9]+"},
                                                         {"bool", "true|false"},
                                                         {"float", "[0-9]+(\\.[0-9]+)?"},
                                                         {"double", "[0-9]+(\\.[0-9]+)?"},
                                                         {"string", ".+"}};
    for (const auto& [name, row] : parameters.items()) {
        const auto type = row.at("type").get<std::string>();
        ASSERT_EQ(defaultForm.count(type), 1U) << name;
        EXPECT_THAT(row.at("default_value").get<std::string>(), MatchesRegex(defaultForm.at(type)))
            << name;
        EXPECT_FALSE(row.at("description").get<std::string>().empty()) << name;
        EXPECT_EQ(row.size(), 3U) << name;
    }
}

TEST_P(ReferenceDatabase, DeviceDataHasOneGradeWithRangesAndNoRevision) {
    ASSERT_EQ(device.size(), 1U);
    const json& limits = device.at("-3");
    EXPECT_FALSE(limits.contains("siliconRev"));
    // SXD4 has one PLL.
    const std::vector<std::string> plls =
        GetParam() == "SXD4" ? std::vector<std::string>{"FLCPLLRANGE"}
                             : std::vector<std::string>{"FLCPLLRANGE", "FRPLLRANGE"};
    for (const std::string& pll : plls) {
        EXPECT_LT(std::stod(limits.at(pll + "_MIN").get<std::string>()),
                  std::stod(limits.at(pll + "_MAX").get<std::string>()))
            << pll;
    }
}

INSTANTIATE_TEST_SUITE_P(Families, ReferenceDatabase, testing::ValuesIn(referenceFamilies()),
                         [](const auto& row) {
                             std::string name = row.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(SxaDatabase, HasTheRangesOfTheFamilyInGigahertz) {
    EXPECT_EQ(referenceFile("SXA", "device.json"),
              json::parse(R"({"-3": {"FLCPLLRANGE_MIN": "8.0", "FLCPLLRANGE_MAX": "16.375",
                                     "FRPLLRANGE_MIN": "4.0", "FRPLLRANGE_MAX": "8.0"}})"));
}

TEST(SxaDatabase, HasTheFourteenParametersOfTheFamily) {
    std::map<std::string, std::vector<std::string>> typeAndDefault;
    const auto file = referenceFile("SXA", "parameters.json");
    for (const auto& [name, row] : file.items()) {
        typeAndDefault[name] = {row.at("type").get<std::string>(),
                                row.at("default_value").get<std::string>()};
    }
    const std::map<std::string, std::vector<std::string>> expected{
        {"RX_BUFFER_MODE", {"int", "1"}},
        {"TX_BUFFER_MODE", {"int", "1"}},
        {"RX_DATA_DECODING", {"string", "RAW"}},
        {"TX_DATA_ENCODING", {"string", "RAW"}},
        {"RX_INT_DATA_WIDTH", {"int", "32"}},
        {"TX_INT_DATA_WIDTH", {"int", "32"}},
        {"RX_LINE_RATE", {"double", "10.3125"}},
        {"TX_LINE_RATE", {"double", "10.3125"}},
        {"RX_PLL_TYPE", {"string", "LCPLL"}},
        {"TX_PLL_TYPE", {"string", "LCPLL"}},
        {"RX_REFCLK_FREQUENCY", {"double", "156.25"}},
        {"TX_REFCLK_FREQUENCY", {"double", "156.25"}},
        {"RX_USER_DATA_WIDTH", {"int", "32"}},
        {"TX_USER_DATA_WIDTH", {"int", "32"}}};
    EXPECT_EQ(typeAndDefault, expected);
}

TEST(SxaDatabase, NarrowsAsFewFieldsAsPossible) {
    const json registers = referenceFile("SXA", "registers.json");
    std::vector<std::string> narrowed;
    for (const catalogueEntry& entry : familyCatalogues().front().catalogue().entries()) {
        for (const registerField& field : entry.fields) {
            const std::string name = fieldName(entry.name, field.name);
            const auto width =
                registers.at(std::string(entry.name)).at("fields").at(name).at(1).get<int>();
            if (field.value >> (width - 1) > 1) {
                narrowed.push_back(name);
            }
        }
    }
    // Six fields of seven bits; one bit and five fields of seven; 24 bits and three fields of
    // seven.
    EXPECT_THAT(narrowed, ElementsAre("ADAPT_DFE_CFG1.h8_initdac", "ADAPT_DFE_CFG1.h9_initdac",
                                      "ADAPT_DFE_CFG2.hf_initdac", "ADAPT_GEN_CFG3.sel_caldac",
                                      "ADAPT_GEN_CFG3.sel_vp0dac", "ADAPT_GEN_CFG3.sel_vp1dac"));
}

}  // namespace
}  // namespace sable_lanecfg
