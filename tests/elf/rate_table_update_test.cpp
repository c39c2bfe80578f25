#include "elf/rate_table_update.h"

#include "elf/elf_work_directory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

using lanecfg_test::ElfWorkDirectory;
using lanecfg_test::readFile;
using sable_lanecfg::updateElfWithRateTable;

namespace {

/// An update whose script names the instance and the ELF.
class RateTableUpdate : public testing::Test {
  protected:
    RateTableUpdate() {
        work.addIdleTool();
        work.writeScript("echo \"$5 $2\"\n");
    }

    bool update(const std::function<std::string()>& makeRateTable) const {
        return updateElfWithRateTable(makeRateTable, "quad", "firmware.elf", work.path());
    }

    /// The text that comes out when the table can't be made.
    std::string thrownText(const std::function<std::string()>& makeRateTable) const {
        try {
            update(makeRateTable);
        } catch (const std::string& text) {
            return text;
        }
        return "nothing thrown";
    }

    const ElfWorkDirectory work;
};

TEST_F(RateTableUpdate, HandsTheTableTheElfAndTheInstanceToTheUpdator) {
    EXPECT_TRUE(update([] { return "0101"; }));
    EXPECT_EQ(readFile(work.rateTableFile()), "0101");
    EXPECT_EQ(readFile(work.logFile()), "quad firmware.elf\n");
}

TEST_F(RateTableUpdate, GivesTheUpdatorsFailure) {
    work.writeScript("exit 1\n");
    EXPECT_FALSE(update([] { return "0101"; }));
}

TEST_F(RateTableUpdate, TurnsAStandardExceptionIntoItsText) {
    EXPECT_EQ(thrownText([]() -> std::string { throw std::out_of_range("register X"); }),
              "Internal Error: Quad IP Generation Error : register X");
}

TEST_F(RateTableUpdate, TurnsAnythingElseIntoAFixedText) {
    EXPECT_EQ(thrownText([]() -> std::string { throw std::string("RX_CFG"); }),
              "Internal Error: Quad IP Generation Error");
    EXPECT_EQ(thrownText([]() -> std::string { throw 7; }),
              "Internal Error: Quad IP Generation Error");
}

TEST_F(RateTableUpdate, WritesNothingWithoutATable) {
    thrownText([]() -> std::string { throw 7; });
    EXPECT_FALSE(std::filesystem::exists(work.rateTableFile()));
    EXPECT_FALSE(std::filesystem::exists(work.logFile()));
}

}  // namespace
