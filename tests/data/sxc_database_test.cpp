#include "families/sxc/sxc_catalogue.h"
#include "support/reference_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

namespace sable_lanecfg {
namespace {

using lanecfg_test::referenceFile;
using nlohmann::json;
using testing::SizeIs;

class SxcDatabase : public testing::Test {
  protected:
    const json registers = referenceFile("SXC", "registers.json");
    const json registersOfSxb = referenceFile("SXB", "registers.json");
};

TEST_F(SxcDatabase, HasTheRangesOfTheFamilyInGigahertz) {
    EXPECT_EQ(referenceFile("SXC", "device.json"), referenceFile("SXB", "device.json"));
}

TEST_F(SxcDatabase, HasEveryRegisterAndFieldOfTheThreeSets) {
    EXPECT_THAT(registers, SizeIs(76 + 90 + 29));
    std::size_t fields = 0;
    for (const json& row : registers) {
        fields += row.at("fields").size();
    }
    // The PLL set of SXB has 816 fields, to which come 40 and from which go two.
    EXPECT_EQ(fields, 816U + 40U - 2U + 747U + 1U + 171U);
}

TEST_F(SxcDatabase, HasEveryRegisterWhereSxbHasIt) {
    for (const auto& [name, row] : registers.items()) {
        EXPECT_EQ(row.at("dstSubBlock"), registersOfSxb.at(name).at("dstSubBlock")) << name;
        EXPECT_EQ(row.at("Offset"), registersOfSxb.at(name).at("Offset")) << name;
    }
}

TEST_F(SxcDatabase, HasCommonFieldsInTheWidthsOfSxb) {
    // A pin for each of four lanes.
    const std::set<std::string> wider{"PIN_CFG0.MST_TX_RESET_PIN_EN",
                                      "PIN_CFG0.MST_RX_RESET_PIN_EN"};
    for (const auto& [name, row] : registers.items()) {
        const json& fieldsOfSxb = registersOfSxb.at(name).at("fields");
        for (const auto& [field, place] : row.at("fields").items()) {
            if (fieldsOfSxb.contains(field)) {
                const int width =
                    wider.count(field) != 0 ? 4 : fieldsOfSxb.at(field).at(1).get<int>();
                EXPECT_EQ(place.at(1), width) << field;
            }
        }
    }
}

TEST_F(SxcDatabase, NarrowsNoConstant) {
    for (const catalogueEntry& entry : sxcCatalogue().entries()) {
        for (const registerField& field : entry.fields) {
            const std::string name = fieldName(entry.name, field.name);
            const json& place = registers.at(std::string(entry.name)).at("fields").at(name);
            EXPECT_LT(field.value, 1ULL << place.at(1).get<unsigned>()) << name;
        }
    }
}

}  // namespace
}  // namespace sable_lanecfg
