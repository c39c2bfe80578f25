#include "support/captured_messages.h"

#include <lanecfg/host/ToolMsgMgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using lanecfg_test::CapturedMessages;
using testing::ElementsAre;

namespace {

ToolMsgRecord recordOf(int argumentCount, const std::string& format,
                       const std::vector<std::string>& arguments) {
    ToolMsgRecord record;
    record.argumentCount = argumentCount;
    record.format = format;
    record.arguments = arguments;
    return record;
}

void send(unsigned severity, const std::string& text) {
    ToolMsgMgr::sendMessage(
        ToolMsgMgrInstance::createInstance::eval(0, "file", 1, "ip", severity, text));
}

struct TextCase {
    std::string description;
    ToolMsgRecord record;
    std::string text;
};

void PrintTo(const TextCase& textCase, std::ostream* stream) {
    *stream << textCase.description;
}

class MessageText : public testing::TestWithParam<TextCase> {};

TEST_P(MessageText, IsMadeFromFormatAndArguments) {
    EXPECT_EQ(GetParam().record.text(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    AllCounts, MessageText,
    testing::Values(
        TextCase{"NoArguments", recordOf(0, "ready", {}), "ready"},
        TextCase{"NoArgumentsKeepPercent", recordOf(0, "50% of %s, 100%", {}), "50% of %s, 100%"},
        TextCase{"ArgumentsInOrder", recordOf(2, "%s before %s", {"a", "b"}), "a before b"},
        TextCase{"ArgumentWithPercentIsNotAFormat", recordOf(1, "<%s>", {"%s %d"}), "<%s %d>"},
        TextCase{"CountOfZeroLeavesTheFormat", recordOf(0, "<%s>", {"a"}), "<%s>"},
        TextCase{"NegativeCountLeavesTheFormat", recordOf(-1, "<%s>", {"a"}), "<%s>"},
        TextCase{"CountWithoutArgumentsLeavesTheFormat", recordOf(1, "<%s>", {}), "<%s>"},
        TextCase{"TooFewArgumentsLeaveGaps", recordOf(2, "<%s><%s>", {"a"}), "<a><>"},
        TextCase{"TooManyArgumentsAreDropped", recordOf(1, "<%s>", {"a", "b"}), "<a>"},
        TextCase{"ArgumentsOfAFormatWithoutPlacesAreDropped", recordOf(1, "fixed", {"a"}), "fixed"},
        TextCase{"DoubledPercentIsOnePercent", recordOf(1, "%s is 5%%", {"a"}), "a is 5%"}),
    [](const testing::TestParamInfo<TextCase>& textCase) { return textCase.param.description; });

TEST(MessageTextOfABrokenFormat, DoesNotThrow) {
    for (const char* format : {"%", "100% %s %", "%s %|", "%|", "%9999%", "%-", "%1% %s"}) {
        EXPECT_NO_THROW(recordOf(1, format, {"a"}).text()) << format;
    }
}

TEST(ToolMsgMgrInstance, KeepsAllPartsOfTheMessage) {
    const ToolMsgMgrInstance message = ToolMsgMgrInstance::createInstance::eval(
        2, "some/file", 37, "ip", ToolMsgSeverity::warning, "%s and %s", {"a", "b"});

    const ToolMsgRecord& record = message.record();
    EXPECT_EQ(record.argumentCount, 2);
    EXPECT_EQ(record.file, "some/file");
    EXPECT_EQ(record.line, 37);
    EXPECT_EQ(record.subsystem, "ip");
    EXPECT_EQ(record.severity, 0x8000000U);
    EXPECT_EQ(record.format, "%s and %s");
    EXPECT_THAT(record.arguments, ElementsAre("a", "b"));
}

TEST(ToolMsgMgrSink, GetsEachMessageAtOnceOnTheSameThread) {
    std::vector<std::string> events;
    std::thread::id sinkThread;
    ToolMsgMgr::Sink previous = ToolMsgMgr::setSink([&](const ToolMsgRecord& record) {
        sinkThread = std::this_thread::get_id();
        events.push_back(record.text());
    });
    send(ToolMsgSeverity::info, "first");
    events.emplace_back("between");
    send(ToolMsgSeverity::info, "second");
    ToolMsgMgr::setSink(previous);

    EXPECT_THAT(events, ElementsAre("first", "between", "second"));
    EXPECT_EQ(sinkThread, std::this_thread::get_id());
}

TEST(ToolMsgMgrSink, IsGivenBackWhenReplaced) {
    const CapturedMessages outer;
    {
        const CapturedMessages inner;
        send(ToolMsgSeverity::info, "to the inner");
        EXPECT_THAT(inner.texts(), ElementsAre("to the inner"));
    }
    send(ToolMsgSeverity::info, "to the outer");
    EXPECT_THAT(outer.texts(), ElementsAre("to the outer"));
}

TEST(ToolMsgMgrSink, MayReplaceItselfAndLivesUntilItReturns) {
    const CapturedMessages restoresTheSinkAtTheEnd;
    std::vector<std::string> events;
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> held = token;
    ToolMsgMgr::setSink([&events, &held, token = std::move(token)](const ToolMsgRecord&) {
        ToolMsgMgr::setSink(
            [&events](const ToolMsgRecord& record) { events.push_back(record.text()); });
        events.emplace_back(held.expired() ? "gone" : "still alive");
    });
    send(ToolMsgSeverity::info, "replaces");
    send(ToolMsgSeverity::info, "arrives");
    EXPECT_THAT(events, ElementsAre("still alive", "arrives"));
    EXPECT_TRUE(held.expired());
}

/// With the default sink in place and standard error caught.
class DefaultSink : public testing::Test {
  protected:
    DefaultSink() { ToolMsgMgr::setSink({}); }

    static std::string printed(unsigned severity, const std::string& text) {
        testing::internal::CaptureStderr();
        send(severity, text);
        return testing::internal::GetCapturedStderr();
    }

  private:
    CapturedMessages restoresTheSinkAtTheEnd_;
};

TEST_F(DefaultSink, PrintsSeverityAndTextAsOneLine) {
    EXPECT_EQ(printed(ToolMsgSeverity::status, "x"), "STATUS: x\n");
    EXPECT_EQ(printed(ToolMsgSeverity::info, "x"), "INFO: x\n");
    EXPECT_EQ(printed(ToolMsgSeverity::warning, "x"), "WARNING: x\n");
    EXPECT_EQ(printed(ToolMsgSeverity::criticalWarning, "x"), "CRITICAL WARNING: x\n");
    EXPECT_EQ(printed(ToolMsgSeverity::error, "x"), "ERROR: x\n");
}

TEST_F(DefaultSink, TakesTheMostSevereBitOfAMask) {
    EXPECT_EQ(printed(ToolMsgSeverity::info | ToolMsgSeverity::error, "x"), "ERROR: x\n");
    EXPECT_EQ(printed(ToolMsgSeverity::status | ToolMsgSeverity::warning, "x"), "WARNING: x\n");
}

TEST_F(DefaultSink, PrintsAnUnknownMaskAsStatus) {
    EXPECT_EQ(printed(0x1, "x"), "STATUS: x\n");
}

TEST_F(DefaultSink, PrintsPercentAsItIs) {
    EXPECT_EQ(printed(ToolMsgSeverity::info, "100% %s"), "INFO: 100% %s\n");
}

TEST_F(DefaultSink, LeavesStandardOutputAlone) {
    testing::internal::CaptureStdout();
    const std::string onStandardError = printed(ToolMsgSeverity::error, "x");
    std::cout.flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(onStandardError, "ERROR: x\n");
}

TEST_F(DefaultSink, IsGivenBackAsASinkThatPrints) {
    const ToolMsgMgr::Sink previous = ToolMsgMgr::setSink([](const ToolMsgRecord&) {});
    ToolMsgRecord record = recordOf(0, "x", {});
    record.severity = ToolMsgSeverity::info;
    testing::internal::CaptureStderr();
    previous(record);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "INFO: x\n");
}

}  // namespace
