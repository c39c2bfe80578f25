#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <map>
#include <sstream>

namespace lanecfg_test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

class MemoryCommand : public CommandLine {
  protected:
    std::map<std::string, std::string> imageOf(const std::vector<std::string>& arguments) const {
        return answerOf(arguments).get<std::map<std::string, std::string>>();
    }
};

TEST_F(MemoryCommand, GivesTheSectionsInOrderOfTheirAddresses) {
    std::vector<std::string> addresses;
    for (const auto& [address, section] : imageOf({"memory", requestPath("sxa_basic")})) {
        addresses.push_back(address);
    }
    EXPECT_THAT(addresses, ElementsAre("@00008000", "@00008050", "@00012A50", "@00012A54",
                                       "@00012B00", "@00012C48", "@00016000"));
}

TEST_F(MemoryCommand, EndsWithTheRateTable) {
    const auto image = imageOf({"memory", requestPath("sxa_multi_rate")});
    EXPECT_THAT(image.at("@00016000"), StartsWith("//Version 2.0 32-bit\n  "));
}

TEST_F(MemoryCommand, WritesInTextEachSectionBehindItsAddress) {
    std::string expected;
    for (const auto& [address, section] : imageOf({"memory", requestPath("sxa_basic")})) {
        expected += address + "\n" + section;
        if (section.back() != '\n') {
            expected += "\n";
        }
    }
    const ProgramResult result = run({"memory", requestPath("sxa_basic")});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output, expected);
}

TEST_F(MemoryCommand, HoldsTheBundledFirmwareInTextBeforeTheRateTable) {
    const std::string firmware = readFile(dataFolder() / "firmware/live.mem");
    const ProgramResult result = run({"memory", requestPath("sxa_basic")});
    EXPECT_EQ(result.output.substr(0, firmware.size()), firmware);
    EXPECT_THAT(result.output.substr(firmware.size()), StartsWith("@00016000\n//Version"));
}

TEST_F(MemoryCommand, TakesTheFirmwareOfEarlySiliconByThePartsRevision) {
    const std::string firmware = readFile(dataFolder() / "firmware/live_early_silicon.mem");
    const std::string part = "sx40-f900-2-e-quad4-ES1-tessera";
    const ProgramResult result = run({"memory", requestPath("sxa_dictionary"), "--part", part});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output.substr(0, firmware.size()), firmware);
}

TEST_F(MemoryCommand, WritesInCsvALineOfTheImageInEachRow) {
    std::string expected = "section,line\n";
    std::istringstream firmware(readFile(dataFolder() / "firmware/live.mem"));
    std::string section;
    for (std::string line; std::getline(firmware, line);) {
        if (line.front() == '@') {
            section = line;
        } else {
            // Without the two blanks in front and the one behind.
            expected += section + "," + line.substr(2, line.size() - 3) + "\n";
        }
    }
    const ProgramResult result = run({"memory", requestPath("sxa_basic"), "--format", "csv"});
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    EXPECT_EQ(result.output.substr(0, expected.size()), expected);
    EXPECT_THAT(result.output.substr(expected.size()),
                StartsWith("@00016000,//Version 2.0 32-bit\n@00016000,1e00001f "));
}

TEST_F(MemoryCommand, WritesTheAnswerToAFile) {
    const std::string file = directory.file("quad.mem");
    const ProgramResult toFile = run({"memory", requestPath("sxa_basic"), "-o", file});
    EXPECT_EQ(toFile.output, "");
    EXPECT_EQ(readFile(file), run({"memory", requestPath("sxa_basic")}).output);
}

TEST_F(MemoryCommand, FailsLikeEveryRequestThatCannotBeLoaded) {
    expectFailure(run({"memory", "/nonexistent.json"}), 1,
                  "Error in parsing the file /nonexistent.json.");
}

TEST_F(MemoryCommand, NamesTheRegisterThatHasNoPlaceInTheTable) {
    SxaDatabase database;
    database.registers["A_CFG1"]["dstSubBlock"] = "ctrl_9";
    expectFailure(
        run({"memory", requestPath("sxa_basic"), "--database", database.writeTo(directory)}), 1,
        "no memory image: register A_CFG1 of type ctrl_9 has no block for channel 0");
}

}  // namespace
}  // namespace lanecfg_test
