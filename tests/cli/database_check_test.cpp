#include "database_check.h"

#include "cli/command_line.h"
#include "register_checks.h"

#include <gmock/gmock.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;
using testing::HasSubstr;

/// A change of the bundled SXA database, and the finding that it has to give.
struct Flaw {
    std::string name;
    std::function<void(SxaDatabase&)> change;
    FindingLevel level;
    std::string file;
    std::string key;
    std::string text;
};

class DatabaseCheck : public testing::Test {
  protected:
    DatabaseReport check(const SxaDatabase& database) {
        return checkDatabase({database.writeTo(directory_)}, findRuleSet("SXA", "live"), console_);
    }
    DatabaseReport checkWithFile(const std::string& file, const std::string& content) {
        const std::string folder = SxaDatabase().writeTo(directory_);
        directory_.write("SXA/" + file, content);
        return checkDatabase({folder}, findRuleSet("SXA", "live"), console_);
    }

    TemporaryDirectory directory_;
    Console console_;
};

TEST_F(DatabaseCheck, FindsNoErrorInTheBundledDatabase) {
    const DatabaseReport report = check(SxaDatabase());
    EXPECT_EQ(report.count(FindingLevel::error), 0U);
    EXPECT_EQ(report.count(FindingLevel::warning), 0U);
    // What the SXA catalogue has, word for word.
    EXPECT_EQ(report.registers.registers, 163U);
    EXPECT_EQ(report.registers.fields, 1165U);
    EXPECT_EQ(report.ruleOutputs, 163U + 1165U);
}

TEST_F(DatabaseCheck, ComparesNothingWithRulesThatItDoesNotKnow) {
    const DatabaseReport report =
        checkDatabase({SxaDatabase().writeTo(directory_)}, nullptr, console_);
    EXPECT_EQ(report.count(FindingLevel::error), 0U);
    EXPECT_EQ(report.ruleOutputs, 0U);
    ASSERT_EQ(report.findings.size(), 1U);
    EXPECT_THAT(report.findings[0].text, HasSubstr("give --family"));
}

TEST_F(DatabaseCheck, LeavesTheConsoleQuiet) {
    testing::internal::CaptureStderr();
    SxaDatabase database;
    database.parameters.clear();
    check(database);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(console_.errorCount(), 0);
}

TEST_F(DatabaseCheck, TellsKeysThatStandTwice) {
    const DatabaseReport report = checkWithFile("registers.json", R"({"A": 1, "A": 2})");
    EXPECT_THAT(report.findings,
                testing::Contains(testing::AllOf(
                    testing::Field(&Finding::key, "A"),
                    testing::Field(&Finding::text, HasSubstr("stands more than once")))));
}

/// Content that is no database at all, for each file.
class DatabaseCheckOfFile
    : public DatabaseCheck,
      public testing::WithParamInterface<std::tuple<std::string, std::string>> {};

TEST_P(DatabaseCheckOfFile, FindsAnErrorAndEndsWell) {
    const auto& [file, content] = GetParam();
    const DatabaseReport report = checkWithFile(file, content);
    EXPECT_GT(report.count(FindingLevel::error), 0U);
    EXPECT_EQ(report.findings.front().file, file);
}

INSTANTIATE_TEST_SUITE_P(
    Each, DatabaseCheckOfFile,
    testing::Combine(testing::Values("device.json", "parameters.json", "registers.json"),
                     testing::Values("", "{", "[]", "7", "{\"A\": 1}", "{\"A\": []}", "{\"A\": {}}",
                                     std::string(1000, '['))));

class DatabaseFlaw : public DatabaseCheck, public testing::WithParamInterface<Flaw> {};

TEST_P(DatabaseFlaw, IsFound) {
    SxaDatabase database;
    GetParam().change(database);
    EXPECT_THAT(check(database).findings,
                testing::Contains(
                    testing::AllOf(testing::Field(&Finding::level, GetParam().level),
                                   testing::Field(&Finding::file, GetParam().file),
                                   testing::Field(&Finding::key, GetParam().key),
                                   testing::Field(&Finding::text, HasSubstr(GetParam().text)))));
}

nlohmann::json& bits(SxaDatabase& database, const std::string& field) {
    return database.registers["A_CFG0"]["fields"]["A_CFG0." + field];
}

nlohmann::json& adaptation(SxaDatabase& database, const std::string& field) {
    return database.registers["ADAPT_DFE_CFG1"]["fields"]["ADAPT_DFE_CFG1." + field];
}

nlohmann::json& lineRate(SxaDatabase& database) {
    return database.parameters["TX_LINE_RATE"];
}

INSTANTIATE_TEST_SUITE_P(
    OfRegisters, DatabaseFlaw,
    testing::ValuesIn(std::vector<Flaw>{
Flaw{"UnknownBlockType",
             [](auto& database) { database.registers["A_CFG0"]["dstSubBlock"] = "attic"; },
             FindingLevel::error, "registers.json", "A_CFG0", "block type \"attic\" is unknown"},
        Flaw{"BlockTypeWithoutKey",
             [](auto& database) { database.registers["A_CFG0"]["dstSubBlock"] = "CTRL"; },
             FindingLevel::warning, "registers.json", "A_CFG0", "under the empty name"},
        Flaw{"NoBlockType",
             [](auto& database) { database.registers["A_CFG0"].erase("dstSubBlock"); },
             FindingLevel::error, "registers.json", "A_CFG0", "\"dstSubBlock\" is missing"},
        Flaw{"OffsetThatIsNotHexadecimal",
             [](auto& database) { database.registers["A_CFG0"]["Offset"] = "0x9G"; },
             FindingLevel::error, "registers.json", "A_CFG0", "\"0x9G\" is not hexadecimal"},
        Flaw{"EmptyOffset", [](auto& database) { database.registers["A_CFG0"]["Offset"] = ""; },
             FindingLevel::error, "registers.json", "A_CFG0", "\"\" is not hexadecimal"},
        Flaw{"NoOffset", [](auto& database) { database.registers["A_CFG0"].erase("Offset"); },
             FindingLevel::error, "registers.json", "A_CFG0", "\"Offset\" is missing"},
        Flaw{"OffsetOfAnotherRegisterOfTheBlock",
             [](auto& database) {
                 // The same offset in another notation.
                 database.registers["A_CFG0"]["Offset"] = "0x0d0";
                 database.registers["A_CFG1"]["Offset"] = "D0";
             },
             FindingLevel::error, "registers.json", "A_CFG1", "is that of A_CFG0 too"},
        Flaw{"NoFields", [](auto& database) { database.registers["A_CFG0"].erase("fields"); },
             FindingLevel::error, "registers.json", "A_CFG0", "\"fields\" is missing"},
        Flaw{"FieldOfOneNumber",
             [](auto& database) { bits(database, "A_BGPD") = nlohmann::json::array({0}); },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD",
             "has 1 numbers, where it needs two"},
        Flaw{"FieldOfText", [](auto& database) { bits(database, "A_BGPD") = "0"; },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD", "needs two"},
        Flaw{"FieldOfFractions",
             [](auto& database) {
                 bits(database, "A_BGPD") = {0.5, 1};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD", "whole numbers"},
        Flaw{"FieldOfHugeNumbers",
             [](auto& database) {
                 bits(database, "A_BGPD") = {4294967296, 1};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD", "whole numbers"},
        Flaw{"FieldBeyondTheWord",
             [](auto& database) {
                 bits(database, "A_BGPD") = {31, 2};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD", "does not fit a word"},
        Flaw{"FieldWithNegativeOffset",
             [](auto& database) {
                 bits(database, "A_BGPD") = {-1, 2};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD", "does not fit a word"},
        Flaw{"FieldWithoutWidth",
             [](auto& database) {
                 bits(database, "A_BGPD") = {0, 0};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD", "does not fit a word"},
        Flaw{"FieldsThatOverlap",
             [](auto& database) {
                 // Bits 2 to 6 are A_BGRCALOVRD's; key order has A_BGPD first.
                 bits(database, "A_BGPD") = {6, 1};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGRCALOVRD",
             "overlaps A_CFG0.A_BGPD at bit 6"},
        Flaw{"FieldOfAnotherName",
             [](auto& database) {
                 database.registers["A_CFG0"]["fields"]["A_CFG1.A_NEW"] = {31, 1};
             },
             FindingLevel::error, "registers.json", "A_CFG1.A_NEW", "must begin with \"A_CFG0.\""}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    AgainstRules, DatabaseFlaw,
    testing::ValuesIn(std::vector<Flaw>{
        Flaw{"RegisterMissing", [](auto& database) { database.registers.erase("A_CFG0"); },
             FindingLevel::error, "registers.json", "A_CFG0", "The rules compose this register"},
        Flaw{"FieldMissing",
             [](auto& database) { database.registers["A_CFG0"]["fields"].erase("A_CFG0.A_BGPD"); },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGPD", "A rule writes this field"},
        Flaw{"FieldThatNoRuleWrites",
             [](auto& database) {
                 bits(database, "A_NEW") = {31, 1};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_NEW", "No rule writes this field"},
        Flaw{"RegisterThatNoRuleWrites",
             [](auto& database) {
                 database.registers["NEW_CFG"] = {{"dstSubBlock", "ctrl_0"},
                                                  {"Offset", "0xFFF"},
                                                  {"fields", nlohmann::json::object()}};
             },
             FindingLevel::note, "registers.json", "NEW_CFG",
             "No rule of SXA writes this register."},
        Flaw{"ConstantThatDoesNotFit",
             // A_BGRCALOVRD is 31, which needs five bits.
             [](auto& database) {
                 bits(database, "A_BGRCALOVRD") = {2, 4};
             },
             FindingLevel::error, "registers.json", "A_CFG0.A_BGRCALOVRD",
             "The rules write 31, which does not fit the field's 4 bits; widen the field, its "
             "register has free bits"},
        Flaw{"ConstantThatDoesNotFitBesideOneFreeBit",
             // h9_initdac is 99 and has the last two bits of a full word.
             [](auto& database) {
                 adaptation(database, "h9_initdac") = {30, 1};
             },
             FindingLevel::error, "registers.json", "ADAPT_DFE_CFG1.h9_initdac",
             "The rules write 99, which does not fit the field's 1 bits; widen the field, its "
             "register has free bits"},
        Flaw{"ConstantThatDoesNotFitAFullWord", [](auto&) {}, FindingLevel::note, "registers.json",
             "ADAPT_DFE_CFG1.h9_initdac",
             "The rules write 99, which does not fit the field's 2 bits; its low bits enter the "
             "register, which is full"}}),
    CaseName());

/// A field on whose place the rate table counts.
struct FixedField {
    std::string registerName;
    std::string field;
    int offset;
    int width;
};

void PrintTo(const FixedField& fixed, std::ostream* out) {
    *out << fixed.registerName << '.' << fixed.field;
}

std::vector<FixedField> fixedFields() {
    std::vector<FixedField> fields{
        {"PIPE_CTRL_CFG7", "TXOUTCLKCTL", 0, 3}, {"PIPE_CTRL_CFG7", "RXOUTCLKCTL", 12, 3},
        {"A_CFG1", "A_HS0_LCPLLFBDIV", 0, 8},    {"A_CFG1", "A_HS0_RPLLFBDIV", 8, 8},
        {"A_CFG1", "A_HS1_LCPLLFBDIV", 16, 8},   {"A_CFG1", "A_HS1_RPLLFBDIV", 24, 8}};
    // First bits of the five neighbours of each channel.
    const std::vector<int> groups{8, 13, 18, 23};
    for (int channel = 0; channel < 4; ++channel) {
        const std::string name = "CH" + std::to_string(channel) + "_";
        int bit = groups[static_cast<std::size_t>(channel)];
        for (const std::string reset : {"ILO", "TX_PROGDIV", "TX_CH", "RX_PROGDIV", "RX_CH"}) {
            fields.push_back({"MST_RESET_CFG", name + reset + "_RESET_EN", bit++, 1});
        }
        fields.push_back({"MST_RESET_CFG", name + "LCPLL_RESET_EN", channel, 1});
        fields.push_back({"MST_RESET_CFG", name + "RPLL_RESET_EN", channel + 4, 1});
        fields.push_back({"MST_RESET_CFG", name + "RX_LCPLL_RESET_EN", channel + 28, 1});
        fields.push_back({"CTRL_RSV_CFG0", name + "RX_RPLL_RESET_EN", channel + 28, 1});
    }
    return fields;
}

/// Registers files of one field, for a database of no known family.
class FixedPlace : public testing::TestWithParam<FixedField> {
  protected:
    static std::vector<Finding> findingsAt(int offset, int width) {
        const std::string& name = GetParam().registerName;
        const std::string field = name + "." + GetParam().field;
        const nlohmann::json place = {offset, width};
        const nlohmann::json root = {
            {name, {{"dstSubBlock", "ctrl_0"}, {"Offset", "0"}, {"fields", {{field, place}}}}}};
        std::vector<Finding> findings;
        FindingList list("registers.json", findings);
        checkRegisters(root, list);
        return findings;
    }

    static auto isTheError() {
        return testing::ElementsAre(testing::AllOf(
            testing::Field(&Finding::level, FindingLevel::error),
            testing::Field(&Finding::key, GetParam().registerName + "." + GetParam().field),
            testing::Field(&Finding::text,
                           HasSubstr("must have bit offset " + std::to_string(GetParam().offset) +
                                     " and width " + std::to_string(GetParam().width)))));
    }
};

TEST_P(FixedPlace, IsAccepted) {
    EXPECT_THAT(findingsAt(GetParam().offset, GetParam().width), testing::IsEmpty());
}

TEST_P(FixedPlace, ElsewhereIsAnError) {
    const int end = GetParam().offset + GetParam().width;
    const int elsewhere = end < 32 ? GetParam().offset + 1 : GetParam().offset - 1;
    EXPECT_THAT(findingsAt(elsewhere, GetParam().width), isTheError());
}

TEST_P(FixedPlace, OfAnotherWidthIsAnError) {
    const int end = GetParam().offset + GetParam().width;
    const int first = end < 32 ? GetParam().offset : GetParam().offset - 1;
    EXPECT_THAT(findingsAt(first, GetParam().width + 1), isTheError());
}

INSTANTIATE_TEST_SUITE_P(OfEveryField, FixedPlace, testing::ValuesIn(fixedFields()),
                         [](const auto& test) {
                             return test.param.registerName + "_" + test.param.field;
                         });

INSTANTIATE_TEST_SUITE_P(
    OfParameters, DatabaseFlaw,
    testing::ValuesIn(std::vector<Flaw>{
        Flaw{"UnknownType", [](auto& database) { lineRate(database)["type"] = "real"; },
             FindingLevel::error, "parameters.json", "TX_LINE_RATE",
             "The type \"real\" is unknown"},
        Flaw{"MissingDefault", [](auto& database) { lineRate(database).erase("default_value"); },
             FindingLevel::error, "parameters.json", "TX_LINE_RATE",
             "\"default_value\" is missing or no text"},
        Flaw{"DefaultThatIsNoText", [](auto& database) { lineRate(database)["default_value"] = 1; },
             FindingLevel::error, "parameters.json", "TX_LINE_RATE",
             "\"default_value\" is missing or no text"},
        Flaw{"DefaultThatDoesNotConvert",
             [](auto& database) { lineRate(database)["default_value"] = "fast"; },
             FindingLevel::error, "parameters.json", "TX_LINE_RATE",
             "\"fast\" does not convert to the type double"},
        Flaw{"DefaultWithTextBehind",
             [](auto& database) { lineRate(database)["default_value"] = "10.3 Gb/s"; },
             FindingLevel::error, "parameters.json", "TX_LINE_RATE", "does not convert"},
        Flaw{"NegativeDefault",
             [](auto& database) {
                 database.parameters["NEW"] = {
                     {"type", "int"}, {"description", ""}, {"default_value", "-1"}};
             },
             FindingLevel::error, "parameters.json", "NEW", "does not convert to the type int"},
        Flaw{"DefaultBeyondItsType",
             [](auto& database) {
                 database.parameters["NEW"] = {
                     {"type", "int"}, {"description", ""}, {"default_value", "4294967296"}};
             },
             FindingLevel::error, "parameters.json", "NEW", "does not convert to the type int"},
        Flaw{"DefaultThatIsNoFlag",
             [](auto& database) {
                 database.parameters["NEW"] = {
                     {"type", "bool"}, {"description", ""}, {"default_value", "yes"}};
             },
             FindingLevel::error, "parameters.json", "NEW", "does not convert to the type bool"}}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(
    OfDeviceData, DatabaseFlaw,
    testing::ValuesIn(std::vector<Flaw>{
        Flaw{"NoSpeedGrade",
             [](auto& database) {
                 database.device = {{"-2", database.device["-3"]}};
             },
             FindingLevel::error, "device.json", "-3", "under the speed grade \"-3\""},
        Flaw{"LimitMissing", [](auto& database) { database.device["-3"].erase("FLCPLLRANGE_MIN"); },
             FindingLevel::error, "device.json", "FLCPLLRANGE_MIN", "The limit is missing"},
        Flaw{"LimitThatIsNoNumber",
             [](auto& database) { database.device["-3"]["FRPLLRANGE_MAX"] = "high"; },
             FindingLevel::error, "device.json", "FRPLLRANGE_MAX", "The limit is no number"},
        Flaw{"LimitInAnObject",
             [](auto& database) {
                 database.device["-3"]["FRPLLRANGE_MAX"] = nlohmann::json::object();
             },
             FindingLevel::error, "device.json", "FRPLLRANGE_MAX",
             "must be a text or a list of texts"},
        Flaw{"EmptyRange",
             [](auto& database) { database.device["-3"]["FLCPLLRANGE_MAX"] = {"7.9"}; },
             FindingLevel::error, "device.json", "FLCPLLRANGE_MAX",
             "below the minimum of its range"}}),
    CaseName());

}  // namespace
}  // namespace lanecfg_test
