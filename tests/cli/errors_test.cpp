#include "errors.h"

#include <gmock/gmock.h>

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace lanecfg_test {
namespace {

using sable_lanecfg::tool::currentExceptionText;
using testing::HasSubstr;

template <class Exception>
std::string textOf(const Exception& exception) {
    try {
        throw exception;
    } catch (...) {
        return currentExceptionText();
    }
}

TEST(ExceptionText, OfAnOffsetThatIsNoNumberTellsWhereItStands) {
    EXPECT_EQ(textOf(std::invalid_argument("stoul")),
              "A register of the database has an offset that is no hexadecimal number; lanecfg "
              "check-database tells which.");
}

TEST(ExceptionText, OfAnOffsetThatIsTooLargeTellsWhereItStands) {
    EXPECT_THAT(textOf(std::out_of_range("stoul")), HasSubstr("A register of the database"));
}

TEST(ExceptionText, OfALimitThatIsNoNumberTellsWhereItStands) {
    EXPECT_EQ(textOf(std::invalid_argument("stod")),
              "A limit in the database's device.json is missing or no number; lanecfg "
              "check-database tells which.");
}

TEST(ExceptionText, OfADivisionByZeroTellsWhatToLookFor) {
    EXPECT_THAT(textOf(std::domain_error("division by zero: INT_RX_OUTDIV is 0")),
                testing::StartsWith("division by zero: INT_RX_OUTDIV is 0. Look for a line rate"));
}

TEST(ExceptionText, OfAPathThatCannotBeFollowedNamesItAndTheReason) {
    EXPECT_EQ(textOf(std::filesystem::filesystem_error(
                  "cannot", "a/b", std::make_error_code(std::errc::permission_denied))),
              "The path a/b can't be followed: Permission denied.");
}

TEST(ExceptionText, OfAMessageIsTheMessage) {
    EXPECT_EQ(textOf(std::invalid_argument("Register A has no place")), "Register A has no place");
}

TEST(ExceptionText, OfANameNamesTheVariableWithoutAValue) {
    EXPECT_THAT(textOf(std::string("XPU_MODE")),
                HasSubstr("the variable \"XPU_MODE\", which has no value"));
}

}  // namespace
}  // namespace lanecfg_test
