#include "cli/command_line.h"
#include "support/packing_request.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using testing::ElementsAreArray;

/// Why a bundled request does not fit, as the library says it.
struct BundledPack {
    std::string name;
    std::vector<std::string> reasons;
};

std::vector<BundledPack> bundledPacks() {
    return {
        {"bypass_independent", {independentBypassText(0, 1, 1), independentBypassText(1, 1, 1)}},
        {"bypass_together", {commonBypassText(0, 1)}},
        {"clock_mismatch", {clockMismatchText("LCPLL", 1)}},
        {"fits", {}},
        {"full_quad", {}},
        {"no_vco", {noVcoText("LCPLL", 0, 0)}},
        {"seven_connections", {connectionsText()}},
        {"source_mismatch", {sourceMismatchText("LCPLL", 0)}},
        {"ten_and_twenty_five", {}},
        {"ten_and_twenty_five_coded", {noVcoText("LCPLL", 0, 0)}}};
}

class BundledPacks : public CommandLine, public testing::WithParamInterface<BundledPack> {};

TEST_P(BundledPacks, HasItsReasons) {
    const ProgramResult result =
        run({"pack", requestPath("pack/" + GetParam().name), "--format", "json"});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.exitCode, GetParam().reasons.empty() ? 0 : 1);
    const auto answer = nlohmann::json::parse(result.output);
    EXPECT_EQ(answer.at("fits"), GetParam().reasons.empty());
    std::vector<std::string> sentences;
    for (const nlohmann::json& reason : answer.at("reasons")) {
        sentences.push_back(reason.at("reason"));
    }
    std::vector<std::string> expected;
    for (const std::string& reason : GetParam().reasons) {
        expected.push_back(sentenceOf(reason));
    }
    EXPECT_EQ(sentences, expected);
}

INSTANTIATE_TEST_SUITE_P(Each, BundledPacks, testing::ValuesIn(bundledPacks()), CaseName());

TEST(BundledPackList, NamesEachOne) {
    std::vector<std::string> names;
    for (const BundledPack& pack : bundledPacks()) {
        names.push_back("pack/" + pack.name);
    }
    EXPECT_THAT(names, ElementsAreArray(packRequests()));
}

}  // namespace
}  // namespace lanecfg_test
