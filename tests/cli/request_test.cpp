#include "request.h"

#include "cli/command_line.h"
#include "support/compressed_content.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

class RequestReader : public testing::Test {
  protected:
    Request readText(const std::string& content) {
        options_.file = directory_.write("request.json", content);
        return readRequest(options_);
    }

    TemporaryDirectory directory_;
    RequestOptions options_;
};

TEST_F(RequestReader, TakesItsOwnRootKeys) {
    const Request request = readText(
        R"({"family": "SXB", "selector": "stable", "description": "two lanes", "laneUsage": []})");
    EXPECT_EQ(request.rules->family, "SXB");
    EXPECT_EQ(request.rules->selector, "stable");
    EXPECT_EQ(request.description, "two lanes");
    EXPECT_FALSE(request.isDictionaryForm);
}

TEST_F(RequestReader, TakesTheCurrentRulesByDefault) {
    EXPECT_EQ(readText(R"({"family": "SXD4"})").rules->selector, "live");
}

TEST_F(RequestReader, TakesTheSelectorInAnyCaseOfLetters) {
    EXPECT_EQ(readText(R"({"family": "SXB", "selector": "STABLE"})").rules->selector, "stable");
}

TEST_F(RequestReader, PrefersTheOptions) {
    options_.family = "SXD4";
    options_.selector = "stable";
    const Request request = readText(R"({"family": "SXB", "selector": "live"})");
    EXPECT_EQ(request.rules->family, "SXD4");
    EXPECT_EQ(request.rules->selector, "stable");
}

TEST_F(RequestReader, PrefersTheOptionForThePart) {
    options_.part = "new";
    const Request request = readText(R"({"family": "SXA", "part": "old", "laneUsage": {},
        "userParams": {"TX_SETTINGS": {}}})");
    EXPECT_EQ(request.part, "new");
}

TEST_F(RequestReader, TakesARequestWithoutLaneUsageAsFileForm) {
    EXPECT_FALSE(readText(R"({"family": "SXA"})").isDictionaryForm);
}

TEST_F(RequestReader, TakesTheDictionaries) {
    const Request request = readText(R"({"family": "SXA", "part": "a-b-c-d-e-f-g",
        "options": {"verbose": "1"},
        "laneUsage": {"0": {"group": "A", "tx": "0,1"}},
        "quadUsage": {"K": {"Q": {"MSTRCLK": "1,0"}}},
        "userParams": {"RX_SETTINGS": {"CH0": {"LR0_SETTINGS": {"RX_LINE_RATE": "10.3125"}}}}})");
    ASSERT_TRUE(request.isDictionaryForm);
    EXPECT_EQ(request.part, "a-b-c-d-e-f-g");
    EXPECT_EQ(request.dictionaries.options.at("verbose"), "1");
    EXPECT_EQ(request.dictionaries.laneUsage.at("0").at("tx"), "0,1");
    EXPECT_EQ(request.dictionaries.quadUsage.at("K").at("Q").at("MSTRCLK"), "1,0");
    EXPECT_EQ(request.dictionaries.userParams.at("RX_SETTINGS")
                  .at("CH0")
                  .at("LR0_SETTINGS")
                  .at("RX_LINE_RATE"),
              "10.3125");
}

TEST_F(RequestReader, TakesNumbersAndFlagsOfTheDictionaryFormAsTheirText) {
    const Request request = readText(R"({"family": "SXA", "laneUsage": {"0": {"tx": 3}},
        "userParams": {"TX_SETTINGS": {"0": {"LR0_SETTINGS": {"A": 10.3125, "B": true}}}}})");
    const auto& values = request.dictionaries.userParams.at("TX_SETTINGS").at("0");
    EXPECT_EQ(request.dictionaries.laneUsage.at("0").at("tx"), "3");
    EXPECT_EQ(values.at("LR0_SETTINGS").at("A"), "10.3125");
    EXPECT_EQ(values.at("LR0_SETTINGS").at("B"), "true");
}

TEST_F(RequestReader, ReadsGzippedRequests) {
    EXPECT_EQ(readText(gzipped(R"({"family": "SXC"})")).rules->family, "SXC");
}

}  // namespace
}  // namespace lanecfg_test
