#include "console.h"

#include "cli/command_line.h"
#include "support/captured_messages.h"

#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>

#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace lanecfg_test {
namespace {

using sable_lanecfg::rule_engine_utilities;
using sable_lanecfg::tool::Console;
using testing::HasSubstr;

TEST(ConsoleMessages, HaveTheirSeverityAndStandOnStandardError) {
    testing::internal::CaptureStderr();
    {
        const Console console;
        for (const char* const severity : {"info", "warning", "critical_warning", "error"}) {
            rule_engine_utilities::addMessage("100% of it", severity);
        }
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "INFO: 100% of it\n"
              "WARNING: 100% of it\n"
              "CRITICAL WARNING: 100% of it\n"
              "ERROR: 100% of it\n");
}

/// What the console shows of a text.
std::string shown(const std::string& text) {
    testing::internal::CaptureStderr();
    {
        Console console;
        console.warning(text);
    }
    return testing::internal::GetCapturedStderr();
}

TEST(ConsoleMessages, ShowControlCharactersInWords) {
    EXPECT_EQ(shown(std::string("a\x1b[2Jb\0c\rd\x7f", 11)),
              "WARNING: a<U+001B>[2Jb<U+0000>c<U+000D>d<U+007F>\n");
}

TEST(ConsoleMessages, ShowControlCharactersOfTwoBytesInWords) {
    // The first one begins a sequence for terminals as escape and bracket do.
    EXPECT_EQ(shown("a\xc2\x9b"
                    "2Jb\xc2\x80\xc2\x9f"),
              "WARNING: a<U+009B>2Jb<U+0080><U+009F>\n");
}

TEST(ConsoleMessages, KeepLineFeedsTabsAndOtherAlphabets) {
    EXPECT_EQ(shown("a\n\tb \u00a0\u00e4\u20ac\xc2"), "WARNING: a\n\tb \u00a0\u00e4\u20ac\xc2\n");
}

TEST(ConsoleMessages, LeaveOutTheMiddleOfAVeryLongText) {
    const std::string text = "start" + std::string(100'000, 'x') + "end";
    EXPECT_EQ(shown(text), "WARNING: start" + std::string(5995, 'x') + " ... " +
                               std::string(997, 'x') + "end\n");
}

TEST(ConsoleMessages, AreNotCutWithinACharacter) {
    // Two bytes each behind the first one: byte 6000 is the second half of a character.
    std::string text = "a";
    for (int count = 0; count < 10'000; ++count) {
        text += "\u00e4";
    }
    const std::string message = shown(text + "b");
    const std::string mark = " ... ";
    const std::size_t place = message.find(mark);
    ASSERT_NE(place, std::string::npos);
    EXPECT_EQ(message.substr(place - 2, 2), "\u00e4");
    EXPECT_EQ(message.substr(place + mark.size(), 2), "\u00e4");
}

TEST(ConsoleMessages, AreCountedWhenTheyAreErrors) {
    testing::internal::CaptureStderr();
    Console console;
    rule_engine_utilities::addMessage("a", "critical_warning");
    EXPECT_EQ(console.errorCount(), 0);
    rule_engine_utilities::addMessage("b", "error");
    console.error("c");
    console.warning("d");
    EXPECT_EQ(console.errorCount(), 2);
    testing::internal::GetCapturedStderr();
}

TEST(ConsoleMessages, ThatAreAlikeInARowAreShownOnceAndAllCounted) {
    testing::internal::CaptureStderr();
    Console console;
    for (const char* const text : {"a", "a", "b", "a"}) {
        console.error(text);
    }
    console.warning("a");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR: a\nERROR: b\nERROR: a\nWARNING: a\n");
    EXPECT_EQ(console.errorCount(), 4);
}

TEST(ConsoleMessages, GoToTheSinkBeforeItAfterItsEnd) {
    const CapturedMessages captured;
    testing::internal::CaptureStderr();
    { const Console console; }
    rule_engine_utilities::addMessage("late", "info");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(captured.texts(), testing::ElementsAre("late"));
}

TEST(ConsoleProgress, IsShownOnATerminalOnly) {
    testing::internal::CaptureStderr();
    {
        Console console;
        console.progress("Working");
        console.endProgress();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

/// A terminal of the test's own, for the program's standard error.
class Terminal {
  public:
    Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
        if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) {
            throw std::runtime_error("no terminal to be had");
        }
        name_ = ptsname(master_);
        // Kept open, so that what was written can be read after the program has ended.
        slave_ = open(name_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }
    ~Terminal() {
        close(slave_);
        close(master_);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    const std::string& name() const { return name_; }

    std::string written() const {
        fcntl(master_, F_SETFL, O_NONBLOCK);
        std::string text(65536, '\0');
        const ssize_t count = read(master_, text.data(), text.size());
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }

  private:
    int master_;
    int slave_ = -1;
    std::string name_;
};

class OnATerminal : public CommandLine {
  protected:
    std::string errorsOf(const std::string& request,
                         const std::map<std::string, std::string>& environment = {}) const {
        ProgramStart start;
        start.arguments = {"attributes", request};
        start.environment = environment;
        start.errorsTo = terminal_.name();
        runProgram(LANECFG_PROGRAM, start);
        return terminal_.written();
    }

    Terminal terminal_;
};

TEST_F(OnATerminal, ErrorsHaveColour) {
    EXPECT_THAT(errorsOf("/nonexistent.json"),
                testing::StartsWith("\x1b[1;31mERROR:\x1b[0m Error in parsing the file "));
}

TEST_F(OnATerminal, ErrorsHaveNoColourWhereTheUserWantsNone) {
    EXPECT_THAT(errorsOf("/nonexistent.json", {{"NO_COLOR", "1"}}),
                testing::StartsWith("ERROR: Error in parsing the file "));
}

TEST_F(OnATerminal, ProgressIsShownAndTakenAway) {
    const std::string errors = errorsOf(requestPath("sxa_basic"));
    EXPECT_THAT(errors, HasSubstr("Running the live rules of SXA on "));
    EXPECT_THAT(errors, testing::EndsWith("\r\x1b[K"));
}

TEST_F(OnATerminal, ProgressStaysOnOneLine) {
    for (const std::string& description :
         {std::string("two\nlines"), std::string(200, 'x'), std::string(100, 'x') + "\u00e4"}) {
        nlohmann::json request = bundledRequest("sxa_basic");
        request["description"] = description;
        const std::string errors = errorsOf(directory.write("request.json", request.dump()));
        EXPECT_THAT(errors, HasSubstr("Running the live rules of SXA on "));
        EXPECT_THAT(errors, testing::Not(HasSubstr("\n")));
        EXPECT_THAT(errors, testing::Not(HasSubstr(std::string(80, 'x'))));
    }
}

}  // namespace
}  // namespace lanecfg_test
