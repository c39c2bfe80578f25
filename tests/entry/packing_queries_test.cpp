#include "support/captured_messages.h"
#include "support/loader_messages.h"
#include "support/packing_request.h"
#include "support/temporary_directory.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>

namespace {

using lanecfg_test::CapturedMessages;
using lanecfg_test::commonBypassText;
using lanecfg_test::DatabaseFiles;
using lanecfg_test::noVcoText;
using lanecfg_test::PackingRequest;
using lanecfg_test::rateOf;
using lanecfg_test::receive;
using lanecfg_test::transmit;
using sable_lanecfg::lane_cfg_ip_mgr;
using sable_lanecfg::textMap;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// Both queries about a request, with its dictionaries and a database that fits it.
class PackingQueries : public testing::Test {
  protected:
    using Query = decltype(lane_cfg_ip_mgr::canBePacked);

    textMap ask(Query& query, bool logErrors) const {
        const DatabaseFiles files = request.database().writeTo(directory);
        return query(instanceName, family, selector, partName, {}, request.laneUsage(),
                     request.userParamDictionary(), files.userParameterTypes, files.fields,
                     files.deviceData, logErrors);
    }
    textMap reasons(bool logErrors = false) const {
        return ask(lane_cfg_ip_mgr::canBePacked, logErrors);
    }
    textMap ports(bool logErrors = false) const {
        return ask(lane_cfg_ip_mgr::getRefClkPorts, logErrors);
    }

    lanecfg_test::TemporaryDirectory directory;
    PackingRequest request;
    std::string instanceName = "quad";
    std::string family = "SXB";
    std::string selector = "live";
    std::string partName = "sb100-pkg676-2-e-lane-es2-tessera";
};

TEST_F(PackingQueries, EmptyAnswerMeansThatTheChannelsCanBePacked) {
    request.addBoth(0, {rateOf(20.0)}).addBoth(3, {rateOf(25.78125)});
    EXPECT_THAT(reasons(), IsEmpty());
}

TEST_F(PackingQueries, ReasonsStandUnderTheirNumbersAsText) {
    request.add(transmit, 0, {rateOf(10.3125), rateOf(100.0)})
        .add(transmit, 1, {rateOf(25.78125), rateOf(100.0)});
    EXPECT_THAT(reasons(), ElementsAre(Pair("1", noVcoText("LCPLL", 0, 0)),
                                       Pair("2", noVcoText("LCPLL", 0, 1))));
}

TEST_F(PackingQueries, PortsHaveTheNamesOfTheirClocks) {
    request.addBoth(0, {rateOf(20.0)}, "link.0");
    EXPECT_THAT(ports(),
                ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", "refclk_link_R0_156.25_MHz_unique1")));
}

TEST_F(PackingQueries, PortsAreGivenOfChannelsThatDoNotFit) {
    request.add(transmit, 0, {rateOf(100.0)});
    EXPECT_THAT(ports(), ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", "refclk_PIN_R0_0_MHz_unique1")));
}

TEST_F(PackingQueries, NameFamilyAndSelectorHaveNoEffect) {
    request.addBoth(0, {rateOf(20.0)});
    const textMap expected = ports();
    instanceName.clear();
    family = "no family";
    selector = "no selector";
    EXPECT_EQ(ports(), expected);
    EXPECT_THAT(reasons(), IsEmpty());
}

TEST_F(PackingQueries, MakeNoInstance) {
    request.addBoth(0, {rateOf(20.0)});
    reasons();
    ports();
    EXPECT_EQ(lane_cfg_ip_mgr::getIPInstance("quad"), nullptr);
}

TEST_F(PackingQueries, AnyAnswerWithErrorCaughtIsTheOnlyAnswerOfThePorts) {
    request.add(transmit, 0, {rateOf(10.3125)}).add(transmit, 1, {rateOf(25.78125)});
    request.add(transmit, 2, {rateOf(20.0)});
    request.parametersAt(transmit, 2).erase("TX_RATE_GROUP");
    EXPECT_THAT(reasons(),
                ElementsAre(Pair("1", "ERROR caught"), Pair("2", noVcoText("LCPLL", 0, 0))));
    EXPECT_THAT(ports(), ElementsAre(Pair("0", "ERROR caught")));
}

TEST_F(PackingQueries, ErrorCaughtBehindOtherReasonsIsTheOnlyAnswerOfThePortsToo) {
    request.addBoth(0, {rateOf(10.0), rateOf(10.0)});
    for (const int rate : {0, 1}) {
        request.parametersAt(receive, 0, rate)["RX_PLL_TYPE"] = std::string("RPLL");
    }
    request.parametersAt(transmit, 0, 0)["TX_BUFFER_MODE"] = 0U;
    request.parametersAt(transmit, 0, 1).erase("TX_PIPM_ENABLE");
    EXPECT_THAT(reasons(),
                ElementsAre(Pair("1", commonBypassText(0, 0)), Pair("2", "ERROR caught")));
    EXPECT_THAT(ports(), ElementsAre(Pair("0", "ERROR caught")));
}

TEST_F(PackingQueries, FaultIsAMessageWithLoggingOn) {
    request.addBoth(0, {rateOf(20.0)});
    request.limits["FLCPLLRANGE_MIN"] = {"low"};
    const CapturedMessages messages;
    EXPECT_THAT(reasons(true), IsEmpty());
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                ElementsAre(testing::StartsWith("Exception caught device limit FLCPLLRANGE_MIN")));
    EXPECT_THAT(ports(true),
                ElementsAre(Pair("HSCLK0_LCPLLGTREFCLK0", "refclk_PIN_R0_156.25_MHz_unique1")));
}

TEST_F(PackingQueries, LaneOutOfRangeIsAMessageOrErrorCaught) {
    request.addBoth(0, {rateOf(20.0)});
    request.channels.front().tx = {4};
    const CapturedMessages messages;
    const textMap silent = reasons(false);
    EXPECT_THAT(silent, testing::Not(IsEmpty()));
    EXPECT_THAT(silent, testing::Each(Pair(testing::_, "ERROR caught")));
    EXPECT_THAT(ports(false), ElementsAre(Pair("0", "ERROR caught")));
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error), IsEmpty());
    EXPECT_THAT(reasons(true), IsEmpty());
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                testing::Contains(testing::StartsWith(
                    "Exception caught no user parameters for TX of lane 4 at rate 0")));
}

TEST_F(PackingQueries, LimitThatIsNoNumberIsErrorCaughtWithLoggingOff) {
    request.addBoth(0, {rateOf(20.0)});
    request.limits["FLCPLLRANGE_MIN"] = {"low"};
    const CapturedMessages messages;
    EXPECT_THAT(reasons(false), ElementsAre(Pair("1", "ERROR caught")));
    EXPECT_THAT(ports(false), ElementsAre(Pair("0", "ERROR caught")));
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error), IsEmpty());
}

TEST_F(PackingQueries, UnusableParametersAreReportedAndGiveEmptyAnswers) {
    request.addBoth(0, {rateOf(20.0)});
    request.parametersAt(receive, 0)["RX_NEW"] = 1U;
    const CapturedMessages messages;
    EXPECT_THAT(reasons(), IsEmpty());
    EXPECT_THAT(ports(), IsEmpty());
    const std::string unknown = lanecfg_test::unknownParameter("RX_NEW");
    const std::string unusable = lanecfg_test::unusableParameters();
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                ElementsAre(unknown, unusable, unknown, unusable));
}

TEST_F(PackingQueries, NoUserParametersAreUnusableToo) {
    request.userParams.clear();
    const CapturedMessages messages;
    EXPECT_THAT(reasons(), IsEmpty());
    EXPECT_THAT(messages.texts(ToolMsgSeverity::error),
                testing::Contains(lanecfg_test::unusableParameters()));
}

TEST_F(PackingQueries, MalformedPartNameIsAnExceptionOfTheHost) {
    request.addBoth(0, {rateOf(20.0)});
    partName = "no-part";
    EXPECT_THROW(reasons(), std::exception);
    EXPECT_THROW(ports(), std::exception);
}

}  // namespace
