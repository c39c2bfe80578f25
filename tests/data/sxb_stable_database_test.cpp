#include "families/frozen/sxb_stable_catalogue.h"
#include "support/reference_data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::referenceFile;
using nlohmann::json;
using testing::ElementsAre;
using testing::SizeIs;

class SxbStableDatabase : public testing::Test {
  protected:
    std::vector<int> placeOf(const std::string& registerName, const std::string& field) const {
        return registers.at(registerName)
            .at("fields")
            .at(registerName + "." + field)
            .get<std::vector<int>>();
    }

    const json registers = referenceFile("SXB-stable", "registers.json");
    const json current = referenceFile("SXB", "registers.json");
};

TEST_F(SxbStableDatabase, HasTheRegistersOfTheFrozenRules) {
    // Of the 195 current registers 6 of bias and 2 of reference clocks are gone; 12 of calibration,
    // 4 memory cells and 3 of the gearbox have come.
    EXPECT_THAT(registers, SizeIs(195 - 6 - 2 + 12 + 4 + 3));
}

TEST_F(SxbStableDatabase, HasTheMemoryCellsInTheFirstAndTheLastBlock) {
    EXPECT_EQ(registers.at("MEMCELLX0C12").at("dstSubBlock"), "ctrl_0");
    EXPECT_EQ(registers.at("MEMCELLX0C13").at("dstSubBlock"), "ctrl_0");
    EXPECT_EQ(registers.at("MEMCELLX0F12").at("dstSubBlock"), "ctrl_3");
    EXPECT_EQ(registers.at("MEMCELLX0F13").at("dstSubBlock"), "ctrl_3");
}

TEST_F(SxbStableDatabase, HasTheCalibrationInItsBlock) {
    for (const auto& [name, row] : registers.items()) {
        if (name.rfind("RCALBG_", 0) == 0) {
            EXPECT_EQ(row.at("dstSubBlock"), "rcalbg_0") << name;
        }
    }
}

TEST_F(SxbStableDatabase, HoldsAReferenceClockWordAsTheCurrentOneDoes) {
    EXPECT_THAT(placeOf("MEMCELLX0F13", "HS1_RPLL_IPS_PIN_EN"), ElementsAre(0, 1));
    EXPECT_THAT(placeOf("MEMCELLX0F13", "HS1_RPLL_IPS_REFCLK_SEL"), ElementsAre(1, 3));
    for (int map = 0; map < 8; ++map) {
        EXPECT_THAT(placeOf("MEMCELLX0F13", "HS1_RPLL_REFCLK_MAP" + std::to_string(map)),
                    ElementsAre(4 + 3 * (7 - map), 3));
    }
}

TEST_F(SxbStableDatabase, GivesComputedFieldsTheWidthsOfTheCurrentOnes) {
    int compared = 0;
    for (const catalogueEntry& entry : sxbStableCatalogue().entries()) {
        const std::string registerName(entry.name);
        for (const registerField& field : entry.fields) {
            const std::string name = fieldName(registerName, field.name);
            if (field.kind != fieldKind::constant && current.contains(registerName)) {
                EXPECT_EQ(registers.at(registerName).at("fields").at(name).at(1),
                          current.at(registerName).at("fields").at(name).at(1))
                    << name;
                ++compared;
            }
        }
    }
    EXPECT_GT(compared, 200);
}

TEST_F(SxbStableDatabase, HasTheParametersAndLimitsOfTheFamilyButBothDirectionsInUse) {
    json expected = referenceFile("SXB", "parameters.json");
    for (const char* const name : {"TX_IN_USE", "RX_IN_USE"}) {
        EXPECT_EQ(expected.at(name).at("default_value"), "false");
        expected[name]["default_value"] = "true";
    }
    EXPECT_EQ(referenceFile("SXB-stable", "parameters.json"), expected);
    EXPECT_EQ(referenceFile("SXB-stable", "device.json"), referenceFile("SXB", "device.json"));
}

}  // namespace
}  // namespace sable_lanecfg
