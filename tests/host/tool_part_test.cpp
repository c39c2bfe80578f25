#include <lanecfg/host/ToolPart.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using testing::AllOf;
using testing::HasSubstr;
using testing::Property;
using testing::Throws;

namespace {

TEST(ToolPart, TellsEachTokenOfTheName) {
    const ToolPart part("dev1-pkg2-3-temp4-arch5-es1-tessera");
    EXPECT_EQ(part.getDevice(), "dev1");
    EXPECT_EQ(part.getPackage(), "pkg2");
    EXPECT_EQ(part.getSpeedGrade(), "-3");
    EXPECT_EQ(part.getTemperatureGrade(), "temp4");
    EXPECT_EQ(part.getArchitecture(), "arch5");
    EXPECT_EQ(part.getSiliconRevision(), "es1");
    EXPECT_EQ(part.getFamily(0), "tessera");
}

TEST(ToolPart, GivesTheSameFamilyInEveryStyle) {
    const ToolPart part("d-p-3-t-a-r-tessera");
    EXPECT_EQ(part.getFamily(1), "tessera");
    EXPECT_EQ(part.getFamily(-1), "tessera");
}

TEST(ToolPart, KeepsBlanksAndCaseOfTheTokens) {
    const ToolPart part(" D-p-3E-t-a-r-Tessera ");
    EXPECT_EQ(part.getDevice(), " D");
    EXPECT_EQ(part.getSpeedGrade(), "-3E");
    EXPECT_EQ(part.getFamily(0), "Tessera ");
}

class RejectedPartName : public testing::TestWithParam<std::string> {};

TEST_P(RejectedPartName, ThrowsAndNamesThePartAndTheForm) {
    const std::string& name = GetParam();
    EXPECT_THAT(
        [&name] { ToolPart{name}; },
        Throws<std::invalid_argument>(Property(
            &std::invalid_argument::what,
            AllOf(HasSubstr("\"" + name + "\""),
                  HasSubstr("DEVICE-PACKAGE-SPEED-TEMPERATURE-ARCHITECTURE-REVISION-FAMILY")))));
}

INSTANTIATE_TEST_SUITE_P(WrongNumberOfTokens, RejectedPartName,
                         testing::Values("", "device", "d-p-3-t-a-r", "d-p-3-t-a-r-f-x"));
INSTANTIATE_TEST_SUITE_P(EmptyToken, RejectedPartName,
                         testing::Values("-p-3-t-a-r-f", "d--3-t-a-r-f", "d-p--t-a-r-f",
                                         "d-p-3--a-r-f", "d-p-3-t--r-f", "d-p-3-t-a--f",
                                         "d-p-3-t-a-r-", "------"));

}  // namespace
