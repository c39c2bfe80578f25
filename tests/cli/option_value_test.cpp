#include "option_value.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using sable_lanecfg::tool::takeWholeNumbers;

/// The numbers that an option makes of these texts.
std::vector<unsigned> numbersOf(const std::vector<std::string>& texts) {
    CLI::App program;
    std::vector<unsigned> numbers;
    takeWholeNumbers(*program.add_option("--number", numbers));
    std::string commandLine;
    for (const std::string& text : texts) {
        commandLine += " --number '" + text + "'";
    }
    program.parse(commandLine);
    return numbers;
}

TEST(WholeNumbers, AreDecimalAlsoWithZerosInFront) {
    EXPECT_THAT(numbersOf({"0", "7", "010", "08", "0019", "4294967295"}),
                testing::ElementsAre(0U, 7U, 10U, 8U, 19U, 4294967295U));
}

TEST(WholeNumbers, AreNothingElse) {
    for (const char* const text :
         {"-1", "+1", "0x1", "1.0", "1 ", " 1", "4294967296", "1e3", "one"}) {
        EXPECT_THROW(numbersOf({text}), CLI::ValidationError) << text;
    }
}

}  // namespace
}  // namespace lanecfg_test
