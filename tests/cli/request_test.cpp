#include "request.h"

#include "cli/command_line.h"
#include "errors.h"
#include "request_dictionaries.h"
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

    /// Reads a good request in the file form with these root keys besides or in place of its own.
    Request readFileForm(const std::map<std::string, std::string>& texts) {
        nlohmann::json root = nlohmann::json::parse(
            R"({"family": "SXA", "laneUsage": [], "quadUsage": {}, "userParams": [[]]})");
        for (const auto& [key, text] : texts) {
            root[key] = text;
        }
        return readText(root.dump());
    }

    /// Message about a request that is refused.
    std::string faultOf(const std::string& content) {
        try {
            readText(content);
        } catch (const RequestError& error) {
            return error.what();
        }
        return "taken";
    }

    TemporaryDirectory directory_;
    RequestOptions options_;
};

TEST_F(RequestReader, TakesItsOwnRootKeys) {
    const Request request =
        readFileForm({{"family", "SXB"}, {"selector", "stable"}, {"description", "two lanes"}});
    EXPECT_EQ(request.rules->family, "SXB");
    EXPECT_EQ(request.rules->selector, "stable");
    EXPECT_EQ(request.description, "two lanes");
    EXPECT_FALSE(request.isDictionaryForm);
}

TEST_F(RequestReader, TakesTheCurrentRulesByDefault) {
    EXPECT_EQ(readFileForm({{"family", "SXD4"}}).rules->selector, "live");
}

TEST_F(RequestReader, TakesTheSelectorInAnyCaseOfLetters) {
    const Request request = readFileForm({{"family", "SXB"}, {"selector", "STABLE"}});
    EXPECT_EQ(request.rules->selector, "stable");
}

TEST_F(RequestReader, PrefersTheOptions) {
    options_.family = "SXD4";
    options_.selector = "stable";
    const Request request = readFileForm({{"family", "SXB"}, {"selector", "live"}});
    EXPECT_EQ(request.rules->family, "SXD4");
    EXPECT_EQ(request.rules->selector, "stable");
}

TEST_F(RequestReader, PrefersTheOptionForThePart) {
    options_.part = "new";
    const Request request = readText(R"({"family": "SXA", "part": "old", "laneUsage": {},
        "userParams": {"TX_SETTINGS": {}}})");
    EXPECT_EQ(request.part, "new");
}

TEST_F(RequestReader, TakesTheFileFormWithoutQuadUsage) {
    EXPECT_FALSE(
        readText(R"({"family": "SXA", "laneUsage": [], "userParams": [[]]})").isDictionaryForm);
}

TEST_F(RequestReader, RefusesARequestWithoutLaneUsage) {
    EXPECT_THAT(faultOf(R"({"family": "SXA", "userParams": [[]]})"),
                testing::EndsWith("request.json: the key \"laneUsage\" must be a list in the file "
                                  "form, or an object in the dictionary form."));
}

TEST_F(RequestReader, TakesOtherRepeatedKeysOfTheFileForm) {
    // Quads may be written as an object that repeats its key.
    EXPECT_FALSE(readText(R"({"family": "SXA", "laneUsage": [], "userParams": [[]],
        "quadUsage": {"K": {"Q": {"Q": {}}, "Q": {"Q": {}}}}, "note": 1, "note": 2})")
                     .isDictionaryForm);
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
    const std::string content = R"({"family": "SXC", "laneUsage": [], "userParams": [[]]})";
    EXPECT_EQ(readText(gzipped(content)).rules->family, "SXC");
}

class RepeatedRootKey : public RequestReader, public testing::WithParamInterface<std::string> {
  protected:
    /// Message about a good request of these two values in which the key stands twice.
    std::string faultWith(const std::string& laneUsage, const std::string& userParams) {
        const std::map<std::string, std::string> values = {
            {"family", "\"SXA\""},        {"selector", "\"live\""}, {"part", "\"\""},
            {"description", "\"lanes\""}, {"laneUsage", laneUsage}, {"userParams", userParams},
            {"quadUsage", "{}"}};
        std::string content = "{\"" + GetParam() + "\": " + values.at(GetParam());
        for (const auto& [key, value] : values) {
            content += ", \"" + key + "\": " + value;
        }
        return faultOf(content + "}");
    }

    std::string expectedFault() const {
        return "Request " + directory_.file("request.json") + ": the key \"" + GetParam() +
               "\" stands more than once. Remove all but one.";
    }
};

TEST_P(RepeatedRootKey, IsRefusedInTheFileForm) {
    EXPECT_EQ(faultWith("[]", "[[]]"), expectedFault());
}

TEST_P(RepeatedRootKey, IsRefusedInTheDictionaryForm) {
    EXPECT_EQ(faultWith("{}", R"({"TX_SETTINGS": {}})"), expectedFault());
}

INSTANTIATE_TEST_SUITE_P(Each, RepeatedRootKey,
                         testing::Values("family", "selector", "part", "description", "laneUsage",
                                         "quadUsage", "userParams"),
                         CaseName());

TEST(RequestDoubts, AreNoneAboutNumberedLanesAndRates) {
    sable_lanecfg::userParamMap userParams;
    for (int rate = 0; rate < 12; ++rate) {
        userParams["TX_SETTINGS"]["CH0"]["LR" + std::to_string(rate) + "_SETTINGS"];
    }
    userParams["RX_SETTINGS"]["3"];
    EXPECT_THAT(doubtsOf(userParams), testing::IsEmpty());
}

TEST(RequestDoubts, TellOfALaneKeyThatNamesNoLane) {
    sable_lanecfg::userParamMap userParams;
    userParams["RX_SETTINGS"]["main4"];
    EXPECT_THAT(doubtsOf(userParams),
                testing::ElementsAre(testing::StartsWith(
                    "The key \"userParams.RX_SETTINGS.main4\" names no lane, 0 to 3")));
}

TEST(RequestDoubts, TellOfTheFirstMissingRate) {
    sable_lanecfg::userParamMap userParams;
    for (const char* const rate : {"LR0_SETTINGS", "LR2_SETTINGS", "X"}) {
        userParams["TX_SETTINGS"]["CH1"][rate];
    }
    EXPECT_THAT(doubtsOf(userParams), testing::ElementsAre(testing::StartsWith(
                                          "The key \"userParams.TX_SETTINGS.CH1\" holds 3 "
                                          "rates, but no \"LR1_SETTINGS\".")));
}

TEST(RequestDoubts, AreNoneAboutListsOfNumbers) {
    const sable_lanecfg::laneUsageMap laneUsage = {
        {"A", {{"group", "A"}, {"tx", "0, 1"}, {"rates", "0"}, {"txrate", "a,b"}, {"rxrate", ""}}}};
    EXPECT_THAT(doubtsOf(laneUsage), testing::IsEmpty());
}

TEST(RequestDoubts, TellOfListsThatHoldSomethingElseThanNumbers) {
    const sable_lanecfg::laneUsageMap laneUsage = {{"A", {{"tx", "0,one"}, {"rx", ""}}},
                                                   {"B", {{"rates", "0,-1"}, {"rx", "0,"}}}};
    const std::string wanted = "\" must be whole numbers with commas between, and is ";
    EXPECT_THAT(doubtsOf(laneUsage),
                testing::ElementsAre(
                    testing::StartsWith("The key \"laneUsage.A.tx" + wanted + "\"0,one\"."),
                    testing::StartsWith("The key \"laneUsage.A.rx" + wanted + "\"\"."),
                    testing::StartsWith("The key \"laneUsage.B.rx" + wanted + "\"0,\"."),
                    testing::StartsWith("The key \"laneUsage.B.rates" + wanted + "\"0,-1\".")));
}

TEST(RequestDoubts, AreOneForEachLaneAndKind) {
    sable_lanecfg::userParamMap userParams;
    userParams["RX_SETTINGS"]["a"]["LR1_SETTINGS"];
    userParams["TX_SETTINGS"]["CH2"]["LR7_SETTINGS"];
    EXPECT_THAT(
        doubtsOf(userParams),
        testing::ElementsAre(testing::HasSubstr("RX_SETTINGS.a\" names no lane"),
                             testing::HasSubstr("RX_SETTINGS.a\" holds 1 rates, but no \"LR0_"),
                             testing::HasSubstr("TX_SETTINGS.CH2\" holds 1 rates, but no \"LR0_")));
}

}  // namespace
}  // namespace lanecfg_test
