#include "parameter_doubts.h"

#include "cli/command_line.h"
#include "support/packing_request.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <gmock/gmock.h>

#include <algorithm>
#include <limits>

namespace lanecfg_test {
namespace {

using nlohmann::json;
using sable_lanecfg::ruleValue;
using sable_lanecfg::tool::encodingWords;
using sable_lanecfg::tool::parameterDoubts;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<std::string> doubtsOf(const PackingRequest& request) {
    return parameterDoubts(request.channels, request.userParams);
}

/// Doubts about lane 0 with one other value.
std::vector<std::string> doubtsAbout(const std::string& name, const ruleValue& value) {
    PackingRequest request = oneLane();
    request.parametersAt(name.rfind("TX", 0) == 0 ? transmit : receive, 0)[name] = value;
    return doubtsOf(request);
}

const std::string endOfDoubt = ". The rules run with it all the same.";

TEST(ParameterDoubts, AreNoneAboutValuesThatHaveACode) {
    for (const std::string direction : {"TX", "RX"}) {
        for (const unsigned width : {16U, 20U, 32U, 40U, 64U, 80U}) {
            EXPECT_THAT(doubtsAbout(direction + "_INT_DATA_WIDTH", width), IsEmpty()) << width;
        }
        for (const unsigned width : {16U, 20U, 32U, 40U, 64U, 80U, 128U, 160U}) {
            EXPECT_THAT(doubtsAbout(direction + "_USER_DATA_WIDTH", width), IsEmpty()) << width;
        }
    }
    for (const std::string coding :
         {"RAW", "8B10B", "128B130B", "64B66B_SYNC", "64B67B", "64B66B_CAUI", "64B67B_CAUI",
          "64B66B_ASYNC", "64B66B_ASYNC_CAUI"}) {
        EXPECT_THAT(doubtsAbout("TX_DATA_ENCODING", coding), IsEmpty()) << coding;
        EXPECT_THAT(doubtsAbout("RX_DATA_DECODING", coding), IsEmpty()) << coding;
    }
    EXPECT_THAT(doubtsAbout("TX_DATA_ENCODING", std::string("PRBS")), IsEmpty());
}

TEST(ParameterDoubts, AreNoneAboutAnyNumberAboveZero) {
    for (const double number : {std::numeric_limits<double>::denorm_min(), 1e-9, 1e300}) {
        EXPECT_THAT(doubtsAbout("TX_LINE_RATE", number), IsEmpty()) << number;
        EXPECT_THAT(doubtsAbout("RX_REFCLK_FREQUENCY", number), IsEmpty()) << number;
    }
}

TEST(ParameterDoubts, TellTheWordsThatAreKnown) {
    EXPECT_THAT(doubtsAbout("RX_DATA_DECODING", std::string("8b10b")),
                ElementsAre("lane 0 RX, rate 0: the parameter \"RX_DATA_DECODING\" must be one of "
                            "128B130B, 8B10B, RAW, 64B66B_SYNC, 64B67B, 64B66B_CAUI, 64B67B_CAUI, "
                            "64B66B_ASYNC, 64B66B_ASYNC_CAUI, and is \"8b10b\"" +
                            endOfDoubt));
}

/// A value that can't be meant, and what is said of it.
struct DoubtCase {
    std::string name;
    std::string parameter;
    ruleValue value;
    std::string text;
};

class ParameterDoubt : public testing::TestWithParam<DoubtCase> {};

TEST_P(ParameterDoubt, NamesPlaceKeyAndValue) {
    const std::string direction = GetParam().parameter.substr(0, 2);
    EXPECT_THAT(doubtsAbout(GetParam().parameter, GetParam().value),
                ElementsAre(testing::AllOf(
                    testing::StartsWith("lane 0 " + direction + ", rate 0: the parameter \"" +
                                        GetParam().parameter + "\" must be "),
                    HasSubstr(GetParam().text), testing::EndsWith(endOfDoubt))));
}

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinite = std::numeric_limits<double>::infinity();

INSTANTIATE_TEST_SUITE_P(
    Each, ParameterDoubt,
    testing::Values(
        DoubtCase{"LineRateOfZero", "TX_LINE_RATE", 0.0, "a number above 0, and is 0.0."},
        DoubtCase{"NegativeLineRate", "RX_LINE_RATE", -10.3125,
                  "a number above 0, and is -10.3125."},
        DoubtCase{"LineRateThatIsNoNumber", "TX_LINE_RATE", notANumber, "a number above 0"},
        DoubtCase{"InfiniteReferenceClock", "RX_REFCLK_FREQUENCY", infinite, "a number above 0"},
        DoubtCase{"ReferenceClockOfZero", "TX_REFCLK_FREQUENCY", 0.0, "above 0, and is 0.0."},
        DoubtCase{"UserWidthWithoutCode", "TX_USER_DATA_WIDTH", 24U,
                  "one of 16, 20, 32, 40, 64, 80, 128, 160, and is 24."},
        DoubtCase{"InternalWidthOfZero", "TX_INT_DATA_WIDTH", 0U,
                  "one of 16, 20, 32, 40, 64, 80, and is 0."},
        DoubtCase{"InternalWidthThatOnlyTheFabricHas", "RX_INT_DATA_WIDTH", 128U,
                  "one of 16, 20, 32, 40, 64, 80, and is 128."},
        DoubtCase{"EmptyCoding", "TX_DATA_ENCODING", std::string(), "PRBS, and is \"\"."},
        DoubtCase{"CodingOfTransmittersInAReceiver", "RX_DATA_DECODING", std::string("PRBS"),
                  "64B66B_ASYNC_CAUI, and is \"PRBS\"."}),
    CaseName());

TEST(ParameterDoubts, AreOneForAllRatesWithTheSameValue) {
    const PackingRequest request = PackingRequest().add(
        transmit, 2, {rateOf(-1.0), rateOf(10.3125), rateOf(0.0), rateOf(-1.0)});
    const std::string text = "the parameter \"TX_LINE_RATE\" must be a number above 0, and is ";
    EXPECT_THAT(doubtsOf(request),
                ElementsAre("lane 2 TX, rates 0, 3: " + text + "-1.0" + endOfDoubt,
                            "lane 2 TX, rate 2: " + text + "0.0" + endOfDoubt));
}

TEST(ParameterDoubts, ComeLaneByLaneTransmitterFirst) {
    PackingRequest request;
    request.addBoth(3, {rateOf(0.0)}).add(receive, 1, {rateOf(0.0)});
    std::vector<std::string> places;
    for (const std::string& doubt : doubtsOf(request)) {
        places.push_back(doubt.substr(0, doubt.find(',')));
    }
    EXPECT_THAT(places, ElementsAre("lane 1 RX", "lane 3 TX", "lane 3 RX"));
}

TEST(ParameterDoubts, PassOverWhatNoGroupOfLanesUses) {
    PackingRequest request = oneLane(rateOf(0.0));
    request.channels.clear();
    request.add(transmit, 1, {rateOf(10.3125)});
    EXPECT_THAT(doubtsOf(request), IsEmpty());
}

TEST(ParameterDoubts, PassOverPlacesWithoutParameters) {
    PackingRequest request = oneLane();
    request.userParams.clear();
    EXPECT_THAT(doubtsOf(request), IsEmpty());
}

TEST(ParameterDoubts, LeaveAValueOfAnotherTypeToTheLibrary) {
    for (const char* const name : {"TX_LINE_RATE", "TX_USER_DATA_WIDTH", "TX_DATA_ENCODING"}) {
        EXPECT_THAT(doubtsAbout(name, false), IsEmpty()) << name;
    }
}

/// The words that a parameter's description lists behind its colon.
std::vector<std::string> describedWords(const std::string& family, const std::string& name) {
    const auto description =
        referenceFile(family, "parameters.json").at(name).at("description").get<std::string>();
    std::string words = description.substr(description.find(": ") + 2);
    words.erase(std::remove(words.begin(), words.end(), ' '), words.end());
    std::vector<std::string> list;
    boost::algorithm::split(list, words, boost::is_any_of(","));
    return list;
}

class KnownCodings : public testing::TestWithParam<std::string> {};

TEST_P(KnownCodings, AreThoseThatTheDatabaseDescribes) {
    EXPECT_THAT(describedWords(GetParam(), "TX_DATA_ENCODING"),
                testing::UnorderedElementsAreArray(encodingWords()));
    for (const std::string& word : describedWords(GetParam(), "RX_DATA_DECODING")) {
        EXPECT_THAT(doubtsAbout("RX_DATA_DECODING", word), IsEmpty()) << word;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, KnownCodings, testing::ValuesIn(referenceFamilies()), CaseName());

/// Subcommands on a request with a value that can't be meant.
class ParameterDoubtCommand : public CommandLine {
  protected:
    std::string warning(const std::string& place, const std::string& text) const {
        return "WARNING: Request " + directory.file("request.json") + ": " + place + text +
               endOfDoubt + "\n";
    }
};

TEST_F(ParameterDoubtCommand, IsAWarningBesideTheAnswer) {
    json request = bundledRequest("sxb_10gbase_r");
    request["userParams"][0][2][0]["TX_USER_DATA_WIDTH"] = 7;
    const std::string text =
        ": the parameter \"TX_USER_DATA_WIDTH\" must be one of 16, 20, 32, 40, 64, 80, 128, 160, "
        "and is 7";
    for (const char* const word :
         {"attributes", "outclk", "snapshot", "log", "memory", "rate-table"}) {
        const ProgramResult result = runOn(request, word, {"--format", "json"});
        EXPECT_EQ(result.exitCode, 0) << word;
        EXPECT_TRUE(json::accept(result.output)) << word;
        EXPECT_EQ(result.errors, warning("lane 2 TX, rate 0", text)) << word;
    }
}

TEST_F(ParameterDoubtCommand, IsAWarningBesideTheVerdict) {
    json request = bundledRequest("sxb_10gbase_r");
    request["userParams"][1][0][0]["RX_DATA_DECODING"] = "raw";
    const ProgramResult result = runOn(request, "pack");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.output, "fits\n");
    EXPECT_THAT(result.errors, HasSubstr("lane 0 RX, rate 0: the parameter \"RX_DATA_DECODING\""));
}

TEST_F(ParameterDoubtCommand, NamesTheLaneOfTheDictionaryForm) {
    json request = bundledRequest("sxa_dictionary");
    request["userParams"]["TX_SETTINGS"]["CH1"]["LR0_SETTINGS"]["TX_LINE_RATE"] = "-10.3125";
    const ProgramResult result = runOn(request, "attributes");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.errors,
                HasSubstr(warning(
                    "lane 1 TX, rate 0",
                    ": the parameter \"TX_LINE_RATE\" must be a number above 0, and is -10.3125")));
}

TEST_F(ParameterDoubtCommand, StandsBeforeTheFailureThatComesOfIt) {
    json request = bundledRequest("sxb_10gbase_r");
    request["userParams"][0][0][0]["TX_INT_DATA_WIDTH"] = 0;
    const ProgramResult result = runOn(request, "attributes");
    expectFailure(result, 1, "division by zero: TX_INT_DATA_WIDTH is 0");
    EXPECT_THAT(result.errors,
                testing::StartsWith(warning("lane 0 TX, rate 0",
                                            ": the parameter \"TX_INT_DATA_WIDTH\" must be one of "
                                            "16, 20, 32, 40, 64, 80, and is 0")));
}

TEST_F(ParameterDoubtCommand, TellsFaultsOfLoadingOnce) {
    json request = bundledRequest("sxb_10gbase_r");
    request.erase("quadUsage");
    const ProgramResult result = runOn(request, "attributes");
    const std::string text = "quadUsage node not found";
    const std::size_t first = result.errors.find(text);
    ASSERT_NE(first, std::string::npos) << result.errors;
    EXPECT_EQ(result.errors.find(text, first + 1), std::string::npos) << result.errors;
}

}  // namespace
}  // namespace lanecfg_test
