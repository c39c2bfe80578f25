#include "families/sxb/sxb_channel_positions.h"
#include "support/print_rule_value.h"
#include "support/quad_usage.h"
#include "sxb_instance_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

namespace sable_lanecfg {
namespace {

using lanecfg_test::PackingRequest;
using lanecfg_test::QuadUsage;
using lanecfg_test::RateSettings;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* txKey = "TX_QUAD_CH";
constexpr const char* rxKey = "RX_QUAD_CH";
const std::vector<std::string> noMasters{"0", "0", "0", "0"};

class SxbChannelPositions : public lanecfg_test::ServiceEngine {
  protected:
    SxbChannelPositions() {
        PackingRequest request;
        for (int lane = 0; lane < 4; ++lane) {
            request.addBoth(lane, {RateSettings()});
        }
        make(request);
    }

    void enter() { enterChannelPositions(*engine, quads.quads); }

    /// Places a transmit quad of its own and gives its links' positions.
    void enterLinks(const std::vector<std::string>& channels,
                    const std::vector<std::string>& masters) {
        quads.add(txKey, "TXQUAD_0", channels, masters);
        enter();
    }

    std::vector<std::string> texts(const std::string& ending, std::size_t direction = 0) const {
        std::vector<std::string> all;
        for (std::size_t lane = 0; lane < 4; ++lane) {
            all.push_back(valueAt<std::string>(direction, lane, 0, word(direction) + ending));
        }
        return all;
    }

    std::vector<std::string> positions(std::size_t direction = 0) const {
        return texts("_PIPE_POSITION", direction);
    }

    std::vector<std::string> alignments(std::size_t direction = 0) const {
        return texts("_SYNCDONE_POSITION", direction);
    }

    std::vector<bool> marks(std::size_t direction = 0) const {
        std::vector<bool> all;
        for (std::size_t lane = 0; lane < 4; ++lane) {
            all.push_back(valueAt<bool>(direction, lane, 0, word(direction) + "_MAINTAIN_MASTER"));
        }
        return all;
    }

    static std::string word(std::size_t direction) { return direction == 0 ? "TX" : "RX"; }

    QuadUsage quads;
};

TEST_F(SxbChannelPositions, WithoutQuadsAreNotEntered) {
    const userParamStore before = engine->userParams;
    enter();
    EXPECT_EQ(engine->userParams, before);
}

TEST_F(SxbChannelPositions, OfALinkOfOneAreSingle) {
    enterLinks({"a.0", "b.0", "c.0", "d.0"}, {"1", "1", "1", "1"});
    EXPECT_THAT(positions(), ElementsAre("single", "single", "single", "single"));
    EXPECT_THAT(alignments(), ElementsAre("single", "single", "single", "single"));
    EXPECT_THAT(marks(), ElementsAre(false, false, false, false));
}

TEST_F(SxbChannelPositions, OfALinkOfFourRunFromBottomToTop) {
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, {"0", "1", "0", "0"});
    EXPECT_THAT(positions(), ElementsAre("bottom", "middle", "middle", "top"));
    EXPECT_THAT(alignments(), ElementsAre("below", "IM", "above", "above"));
    EXPECT_THAT(marks(), ElementsAre(false, false, true, false));
}

TEST_F(SxbChannelPositions, MarkTheOneBelowWhenTheThirdOfFourIsTheMaster) {
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, {"0", "0", "1", "0"});
    EXPECT_THAT(alignments(), ElementsAre("below", "below", "IM", "above"));
    EXPECT_THAT(marks(), ElementsAre(false, true, false, false));
}

TEST_F(SxbChannelPositions, OfALinkOfTwoAreBottomAndTop) {
    enterLinks({"a.0", "a.1", "b.0", "b.1"}, {"1", "0", "0", "1"});
    EXPECT_THAT(positions(), ElementsAre("bottom", "top", "bottom", "top"));
    EXPECT_THAT(alignments(), ElementsAre("IM", "above", "below", "IM"));
    // The second of two is behind the middle; where it is the master, the first is marked.
    EXPECT_THAT(marks(), ElementsAre(false, true, true, false));
}

TEST_F(SxbChannelPositions, OfALinkOfThreeMarkTheMiddle) {
    enterLinks({"a.0", "a.1", "a.2", "b.0"}, {"1", "0", "0", "1"});
    EXPECT_THAT(positions(), ElementsAre("bottom", "middle", "top", "single"));
    EXPECT_THAT(marks(), ElementsAre(false, true, false, false));
}

TEST_F(SxbChannelPositions, OfLinksAmongEachOtherCountEachForItself) {
    enterLinks({"a.0", "b.0", "a.1", "b.1"}, {"0", "1", "1", "0"});
    EXPECT_THAT(positions(), ElementsAre("bottom", "bottom", "top", "top"));
    EXPECT_THAT(alignments(), ElementsAre("below", "IM", "IM", "above"));
    // The master a.1 leaves its mark to the channel before it in the quad, which is b's.
    EXPECT_THAT(marks(), ElementsAre(false, true, false, true));
}

TEST_F(SxbChannelPositions, OfUnusedChannelsAreSingleHoweverManyThereAre) {
    enterLinks({"undef", "", "undef", ""}, noMasters);
    EXPECT_THAT(positions(), ElementsAre("single", "single", "single", "single"));
    EXPECT_THAT(alignments(), ElementsAre("single", "single", "single", "single"));
    EXPECT_THAT(marks(), ElementsAre(false, false, false, false));
}

TEST_F(SxbChannelPositions, NameALinkByWhatIsBeforeTheFirstPoint) {
    enterLinks({"a", "a.b.c", "ab.0", ".a"}, noMasters);
    EXPECT_THAT(positions(), ElementsAre("bottom", "top", "single", "single"));
}

TEST_F(SxbChannelPositions, WithoutMasterEntryHaveNoAlignment) {
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, {"x", "0"});
    EXPECT_THAT(positions(), ElementsAre("bottom", "middle", "middle", "top"));
    EXPECT_THAT(alignments(), ElementsAre("single", "below", "single", "single"));
    EXPECT_THAT(marks(), ElementsAre(false, false, true, false));
}

TEST_F(SxbChannelPositions, AboveTheMasterAreAboveWhateverTheirEntry) {
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, {"1", "1", "x"});
    EXPECT_THAT(alignments(), ElementsAre("IM", "above", "above", "above"));
}

TEST_F(SxbChannelPositions, CountOnOverTheQuadsOfALink) {
    quads.add(txKey, "TXQUAD_0", {"a.0", "a.1", "a.2", "a.3"}, {"0", "0", "0", "0"}, false);
    quads.add(txKey, "TXQUAD_1", {"a.4", "a.5", "b.0", "b.1"}, {"1", "0", "1", "0"}, true);
    enter();
    EXPECT_THAT(positions(), ElementsAre("middle", "top", "bottom", "top"));
    EXPECT_THAT(alignments(), ElementsAre("IM", "above", "IM", "above"));
    // Of six channels the fourth is marked, which is in the other quad.
    EXPECT_THAT(marks(), ElementsAre(false, false, false, true));
}

/// A link of four with two channels in each of two quads, whose third is the master.
class SxbMarkOfALinkOverTwoQuads : public SxbChannelPositions {
  protected:
    void enterAsQuad(int current) {
        quads.add(txKey, "TXQUAD_0", {"b.0", "c.0", "a.0", "a.1"}, noMasters, current == 0);
        quads.add(txKey, "TXQUAD_1", {"a.2", "a.3", "d.0", "e.0"}, {"1", "0", "0", "0"},
                  current == 1);
        enter();
    }
};

TEST_F(SxbMarkOfALinkOverTwoQuads, LeavesTheQuadOfTheMaster) {
    enterAsQuad(1);
    EXPECT_THAT(alignments(), ElementsAre("IM", "above", "single", "single"));
    EXPECT_THAT(marks(), ElementsAre(false, false, false, false));
}

TEST_F(SxbMarkOfALinkOverTwoQuads, GoesToThePredecessorInTheOtherQuad) {
    enterAsQuad(0);
    EXPECT_THAT(positions(), ElementsAre("single", "single", "bottom", "middle"));
    EXPECT_THAT(marks(), ElementsAre(false, false, false, true));
}

TEST_F(SxbChannelPositions, OrderQuadsByNumberAndNotByText) {
    quads.add(txKey, "TXQUAD_10", {"a.4", "a.5", "a.6", "a.7"}, noMasters, true);
    quads.add(txKey, "TXQUAD_2", {"a.0", "a.1", "a.2", "a.3"}, noMasters, false);
    enter();
    EXPECT_THAT(positions(), ElementsAre("middle", "middle", "middle", "top"));
    EXPECT_THAT(marks(), ElementsAre(true, false, false, false));
}

TEST_F(SxbChannelPositions, TakeAllBehindTheFirstUnderscoreForTheNumber) {
    quads.add(txKey, "TX_3_QUAD", {"a.4", "a.5", "a.6", "a.7"}, noMasters, false);
    quads.add(txKey, "TX_1_QUAD", {"a.0", "a.1", "a.2", "a.3"}, noMasters, true);
    enter();
    EXPECT_THAT(positions(), ElementsAre("bottom", "middle", "middle", "middle"));
}

TEST_F(SxbChannelPositions, TakeTheWholeNameWithoutUnderscore) {
    quads.add(txKey, "2", {"a.4", "a.5", "a.6", "a.7"}, noMasters, true);
    quads.add(txKey, "1", {"a.0", "a.1", "a.2", "a.3"}, noMasters, false);
    enter();
    EXPECT_THAT(positions(), ElementsAre("middle", "middle", "middle", "top"));
}

TEST_F(SxbChannelPositions, OfBothDirectionsAreThoseOfTheOneCurrentQuad) {
    for (const bool isLater : {false, true}) {
        const std::string name = isLater ? "QUAD_1" : "QUAD_0";
        // Only the transmit record says which quad it is.
        quads.add(txKey, "TX" + name, {"a.0", "a.1", "a.2", "a.3"}, noMasters, isLater);
        quads.add(rxKey, "RX" + name, {"b.0", "b.1", "b.2", "b.3"}, noMasters, false);
    }
    enter();
    EXPECT_THAT(positions(0), ElementsAre("middle", "middle", "middle", "top"));
    EXPECT_THAT(positions(1), ElementsAre("middle", "middle", "middle", "top"));
}

TEST_F(SxbChannelPositions, WithoutCurrentQuadAreThoseOfTheFirst) {
    quads.add(txKey, "TXQUAD_1", {"a.0", "a.1", "a.2", "a.3"}, noMasters, false);
    quads.add(txKey, "TXQUAD_2", {"a.4", "a.5", "a.6", "a.7"}, noMasters, false);
    enter();
    EXPECT_THAT(positions(), ElementsAre("bottom", "middle", "middle", "middle"));
}

TEST_F(SxbChannelPositions, OfADirectionWithoutTheCurrentQuadAreThoseOfItsFirst) {
    quads.add(txKey, "TXQUAD_5", {"a.0", "b.0", "c.0", "d.0"}, noMasters, true);
    quads.add(rxKey, "RXQUAD_1", {"a.0", "a.1", "a.2", "a.3"}, noMasters, false);
    quads.add(rxKey, "RXQUAD_2", {"a.4", "a.5", "a.6", "a.7"}, noMasters, false);
    enter();
    EXPECT_THAT(positions(1), ElementsAre("bottom", "middle", "middle", "middle"));
}

TEST_F(SxbChannelPositions, OfChannelsThatTheQuadDoesNotListAreMiddle) {
    enterLinks({"a.0", "a.1"}, {"1", "0"});
    EXPECT_THAT(positions(), ElementsAre("bottom", "top", "middle", "middle"));
    EXPECT_THAT(alignments(), ElementsAre("IM", "above", "single", "single"));
    EXPECT_THAT(marks(), ElementsAre(false, true, false, false));
}

TEST_F(SxbChannelPositions, OfADirectionWithoutQuadsAreMiddle) {
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, noMasters);
    EXPECT_THAT(positions(1), ElementsAre("middle", "middle", "middle", "middle"));
    EXPECT_THAT(alignments(1), ElementsAre("single", "single", "single", "single"));
    EXPECT_THAT(marks(1), ElementsAre(false, false, false, false));
}

TEST_F(SxbChannelPositions, TakeEveryOtherKeyForReceive) {
    quads.add("QUAD_CH", "QUAD_0", {"a.0", "a.1", "a.2", "a.3"}, noMasters);
    enter();
    EXPECT_THAT(positions(1), ElementsAre("bottom", "middle", "middle", "top"));
}

TEST_F(SxbChannelPositions, PassOverAQuadWithoutRecord) {
    quads.quads["TXQUAD_0"] = nullptr;
    enter();
    EXPECT_THAT(positions(), ElementsAre("middle", "middle", "middle", "middle"));
}

TEST_F(SxbChannelPositions, OfAllChannelsAreToldToEachLane) {
    quads.add(rxKey, "RXQUAD_0", {"a.0", "a.1", "a.2", "b.0"}, {"1", "0", "0", "1"});
    enter();
    const std::vector<std::pair<std::string, std::string>> expected{
        {"bottom", "IM"}, {"middle", "above"}, {"top", "above"}, {"single", "single"}};
    for (std::size_t lane = 0; lane < 4; ++lane) {
        for (std::size_t channel = 0; channel < 4; ++channel) {
            const std::string prefix = "RX_CH" + std::to_string(channel);
            EXPECT_EQ(valueAt<std::string>(1, lane, 0, prefix + "_RESETDONE_POSITION"),
                      expected[channel].first);
            EXPECT_EQ(valueAt<std::string>(1, lane, 0, prefix + "_SYNCDONE_POSITION"),
                      expected[channel].second);
        }
    }
}

TEST_F(SxbChannelPositions, LeaveTheCommonClockAsTheUserHasIt) {
    engine->userParams[0][1][0]["TX_COMMON_USRCLK"] = true;
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, noMasters);
    EXPECT_FALSE(valueAt<bool>(0, 0, 0, "TX_COMMON_USRCLK"));
    EXPECT_TRUE(valueAt<bool>(0, 1, 0, "TX_COMMON_USRCLK"));
    EXPECT_FALSE(valueAt<bool>(1, 1, 0, "RX_COMMON_USRCLK"));
}

TEST_F(SxbChannelPositions, AreEnteredAtNoMoreRatesThanTheLaneHas) {
    PackingRequest request;
    request.addBoth(0, {RateSettings(), RateSettings(), RateSettings()})
        .addBoth(1, {RateSettings(), RateSettings()});
    request.channels[0].rates = {0, 1};
    request.channels[1].rates = {0, 1, 2};
    make(request);
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, noMasters);
    EXPECT_TRUE(has(0, 0, 1, "TX_PIPE_POSITION"));
    EXPECT_FALSE(has(0, 0, 2, "TX_PIPE_POSITION"));
    EXPECT_TRUE(has(0, 1, 1, "TX_PIPE_POSITION"));
    EXPECT_EQ(engine->userParams[0][1].size(), 2U);
    EXPECT_THAT(engine->userParams[0][2], IsEmpty());
}

TEST_F(SxbChannelPositions, OfALaneInNoRecordAreEnteredAtItsFirstRate) {
    PackingRequest request;
    request.addBoth(0, {RateSettings(), RateSettings()});
    request.channels.clear();
    make(request);
    enterLinks({"a.0", "a.1", "a.2", "a.3"}, noMasters);
    EXPECT_TRUE(has(0, 0, 0, "TX_PIPE_POSITION"));
    EXPECT_FALSE(has(0, 0, 1, "TX_PIPE_POSITION"));
}

TEST_F(SxbChannelPositions, NeedNoLanesAtAll) {
    for (const userParamStore& store :
         {userParamStore(), userParamStore(1), userParamStore(2, {{}, {}})}) {
        engine->userParams = store;
        enterLinks({"a.0", "a.1", "a.2", "a.3"}, noMasters);
        EXPECT_EQ(engine->userParams, store);
    }
}

/// Links of random lengths one behind the other in three quads.
class SxbPositionsOfRandomLinks : public SxbChannelPositions,
                                  public testing::WithParamInterface<unsigned int> {};

TEST_P(SxbPositionsOfRandomLinks, BeginAtTheBottomAndEndAtTheTop) {
    std::mt19937 random(GetParam());
    std::vector<std::size_t> lengths;
    std::vector<std::size_t> places;
    std::vector<std::string> channels;
    while (channels.size() < 12) {
        const auto link = std::to_string(lengths.size());
        lengths.push_back(
            std::uniform_int_distribution<std::size_t>(1, 12 - channels.size())(random));
        for (std::size_t place = 1; place <= lengths.back(); ++place) {
            places.push_back(place);
            channels.push_back("link" + link + "." + std::to_string(place));
        }
    }
    const auto current = std::uniform_int_distribution<std::size_t>(0, 2)(random);
    std::vector<std::string> expected;
    std::size_t link = 0;
    for (std::size_t index = 0; index < 12; ++index) {
        const std::size_t length = lengths[link];
        const std::size_t place = places[index];
        if (index / 4 == current) {
            expected.emplace_back(length == 1       ? "single"
                                  : place == 1      ? "bottom"
                                  : place == length ? "top"
                                                    : "middle");
        }
        link += place == length ? 1 : 0;
    }
    for (std::size_t quad = 0; quad < 3; ++quad) {
        const auto first = channels.begin() + static_cast<std::ptrdiff_t>(4 * quad);
        quads.add(txKey, "TXQUAD_" + std::to_string(quad), {first, first + 4}, noMasters,
                  quad == current);
    }
    enter();
    EXPECT_EQ(positions(), expected);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SxbPositionsOfRandomLinks, testing::Range(0U, 30U));

}  // namespace
}  // namespace sable_lanecfg
