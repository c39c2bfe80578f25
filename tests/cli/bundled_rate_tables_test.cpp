#include "cli/bundled_tables.h"
#include "cli/command_line.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace lanecfg_test {
namespace {

class BundledTableWords : public CommandLine, public testing::WithParamInterface<BundledTable> {};

TEST_P(BundledTableWords, AreTheOnesWorkedOutByHand) {
    const nlohmann::json answer = answerOf({"rate-table", requestPath(GetParam().name)});
    std::vector<std::uint32_t> words;
    for (const nlohmann::json& row : answer) {
        words.push_back(
            static_cast<std::uint32_t>(std::stoul(row.at("hex").get<std::string>(), nullptr, 16)));
    }
    EXPECT_EQ(words, GetParam().words);
}

// Every SXA register is a constant, so that only PIPE_CTRL_CFG7 is in its tables, which is in all
// tables: a register of the lane at offset 0x80, always under a mask, with no bit of its own that
// changes, so that the mask has the bits of the clock controls. Its constants are all 0. The group
// is that of one masked register: bits 24 and 23, and 0x80 at bit 13 and at bit 3: 0x01800000 |
// 0x00100000 | 0x400.
constexpr std::uint32_t pipeHeader = 0x01900400;

// In front of each value: structure words with duplex flags at bit 25, masters of channels 3 to 1
// at bits 23, 21 and 19, groups of channels 3 to 0 at bits 13, 9, 5 and 1, and bit 0; channel words
// with the number of rates at bit 20, the words of a rate at bit 10, and the offset.
INSTANTIATE_TEST_SUITE_P(
    Requests, BundledTableWords,
    testing::Values(
        BundledTable{"sxa_basic",
                     {
                         0x1e00001f,  // TX: all duplex (1111), all with master 0, group 1111
                         0x1e00001f,  // RX: the same
                         0x00100c0a,  // channel 0: 1 rate of 3 words from word 10
                         0x00100c0a,  //   both directions have the same word
                         0x0010000d,  // channel 1: 1 rate, none of its own, behind at word 13
                         0x0010000d,  //
                         0x0010000d,  // channel 2 likewise
                         0x0010000d,  //
                         0x0010000d,  // channel 3 likewise
                         0x0010000d,  //
                         pipeHeader, txMask, 0,  // channel 0, rate 0
                     }},
        BundledTable{"sxa_dictionary",
                     {
                         // Channels 0 and 1 are on rate pin "A", 2 and 3 have none: masters of
                         // channels 3 and 2 are 2 (0x01400000), group 1100 of channel 2 (0x1800),
                         // group 0011 of channel 0 (0x6).
                         0x1f401807,  // TX: all duplex
                         0x1f401807,  // RX: the same
                         0x00100c0a,  // channel 0: 1 rate of 3 words from word 10
                         0x00100c0a,  //
                         0x0010000d,  // channel 1: 1 rate, follows
                         0x0010000d,  //
                         0x00100c0d,  // channel 2: 1 rate of defaults, 3 words from word 13
                         0x00100c0d,  //
                         0x00100010,  // channel 3: 1 rate, follows
                         0x00100010,  //
                         pipeHeader, txMask, 0,  // channel 0, rate 0
                         pipeHeader, txMask, 0,  // channel 2, rate 0
                     }},
        BundledTable{"sxa_multi_rate",
                     {
                         // Channels 0 and 1 are duplex (0011: 0x06000000) in group "A", 2 and 3 are
                         // together in "B" to transmit and in "C" to receive; masters and groups
                         // are those of two pairs.
                         0x07401807,  // TX
                         0x07401807,  // RX: the same pairs
                         0x00200c0a,  // channel 0: 2 rates of 3 words from word 10
                         0x00200c0a,  //
                         0x00200010,  // channel 1: 2 rates, follows; behind at word 16
                         0x00200010,  //
                         0x00200c10,  // channel 2 TX: 2 rates of 3 words from word 16
                         0x00300c16,  // channel 2 RX: 3 rates of 3 words from word 22
                         0x00200016,  // channel 3 TX: 2 rates, follows; behind at word 22
                         0x0030001f,  // channel 3 RX: 3 rates, follows; behind at word 31
                         pipeHeader, txMask, 0,  // channel 0, rate 0
                         pipeHeader, txMask, 0,  //   rate 1
                         pipeHeader, txMask, 0,  // channel 2 TX, rate 0
                         pipeHeader, txMask, 0,  //   rate 1
                         pipeHeader, rxMask, 0,  // channel 2 RX, rate 0
                         pipeHeader, rxMask, 0,  //   rate 1
                         pipeHeader, rxMask, 0,  //   rate 2
                     }},
        BundledTable{"sxa_receive_only",
                     {
                         // No channel has a transmit group, so that all four follow channel 0
                         // there. Channels 0 and 1 receive in group "A", 2 and 3 have none in
                         // either direction and are duplex (1100: 0x18000000).
                         0x1800001f,  // TX: group 1111 of channel 0
                         0x19401807,  // RX: two pairs
                         0x00100c0a,  // channel 0 TX: 1 rate of defaults, 3 words from word 10
                         0x00100c0d,  // channel 0 RX: 1 rate of 3 words from word 13
                         0x0010000d,  // channel 1 TX: 1 rate, follows
                         0x00100010,  // channel 1 RX: 1 rate, follows; behind at word 16
                         0x0010000d,  // channel 2: 1 rate, follows to transmit
                         0x0010000d,  //
                         0x0010000d,  // channel 3 likewise
                         0x0010000d,  //
                         pipeHeader, txMask, 0,  // channel 0 TX, rate 0
                         pipeHeader, rxMask, 0,  // channel 0 RX, rate 0
                     }}),
    CaseName());

INSTANTIATE_TEST_SUITE_P(SxbRequests, BundledTableWords, testing::ValuesIn(sxbTables()),
                         CaseName());
INSTANTIATE_TEST_SUITE_P(SxbStableRequests, BundledTableWords, testing::ValuesIn(sxbStableTables()),
                         CaseName());
INSTANTIATE_TEST_SUITE_P(PcieRequests, BundledTableWords, testing::ValuesIn(pcieTables()),
                         CaseName());
INSTANTIATE_TEST_SUITE_P(Sxd4Requests, BundledTableWords, testing::ValuesIn(sxd4Tables()),
                         CaseName());

/// SXD4 has no register that every table holds, so without a change of rate its tables are empty.
bool hasWrites(const std::string& name) {
    const nlohmann::json request = bundledRequest(name);
    if (request.at("family") != "SXD4") {
        return true;
    }
    const nlohmann::json lanes = request.at("userParams").at(0);
    return std::any_of(lanes.begin(), lanes.end(),
                       [](const nlohmann::json& rates) { return rates.size() > 1; });
}

std::vector<std::string> bundledTables(bool withWrites) {
    std::vector<std::string> names;
    for (const std::string& name : bundledRequests()) {
        if (hasWrites(name) == withWrites) {
            names.push_back(name);
        }
    }
    return names;
}

class EmptyBundledTable : public CommandLine, public testing::WithParamInterface<std::string> {};

TEST_P(EmptyBundledTable, IsWithoutFault) {
    const nlohmann::json answer =
        answerOf({"rate-table", requestPath(GetParam()), "--decode", "--verify"});
    EXPECT_FALSE(answer.at("verify").at("failed").get<bool>()) << answer.at("verify").at("verdict");
    EXPECT_TRUE(answer.at("writes").empty());
}

INSTANTIATE_TEST_SUITE_P(Requests, EmptyBundledTable, testing::ValuesIn(bundledTables(false)),
                         CaseName());

/// All other bundled requests of all families.
class EveryBundledTable : public CommandLine, public testing::WithParamInterface<std::string> {};

TEST_P(EveryBundledTable, BringsItsOwnersToEveryRate) {
    const nlohmann::json answer =
        answerOf({"rate-table", requestPath(GetParam()), "--decode", "--verify"});
    EXPECT_FALSE(answer.at("verify").at("failed").get<bool>()) << answer.at("verify").at("verdict");
    EXPECT_GT(answer.at("verify").at("classes").at("replays").get<int>(), 0);
    EXPECT_FALSE(answer.at("writes").empty());
}

TEST_P(EveryBundledTable, NamesARegisterForEachWrite) {
    const nlohmann::json answer = answerOf({"rate-table", requestPath(GetParam()), "--decode"});
    for (const nlohmann::json& write : answer.at("writes")) {
        EXPECT_NE(write.at("register"), "") << write;
        EXPECT_THAT(write.at("register").get<std::string>(),
                    testing::Not(testing::HasSubstr(" or ")));
    }
}

TEST_P(EveryBundledTable, IsTheSameEachTime) {
    EXPECT_EQ(run({"rate-table", requestPath(GetParam())}).output,
              run({"rate-table", requestPath(GetParam())}).output);
}

INSTANTIATE_TEST_SUITE_P(Requests, EveryBundledTable, testing::ValuesIn(bundledTables(true)),
                         CaseName());

}  // namespace
}  // namespace lanecfg_test
