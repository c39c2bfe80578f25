#include "finding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {
namespace {

using sable_lanecfg::tool::Finding;
using sable_lanecfg::tool::FindingLevel;
using sable_lanecfg::tool::withAlikeNotesJoined;
using testing::ElementsAre;
using testing::IsEmpty;

/// Findings of one level and text about the keys K1, K2 and so on.
std::vector<Finding> alike(int count, FindingLevel level = FindingLevel::note,
                           const std::string& file = "registers.json",
                           const std::string& text = "No rule writes this register.") {
    std::vector<Finding> findings;
    for (int number = 1; number <= count; ++number) {
        findings.push_back({level, file, "K" + std::to_string(number), text});
    }
    return findings;
}

std::vector<Finding> together(const std::vector<std::vector<Finding>>& parts) {
    std::vector<Finding> all;
    for (const std::vector<Finding>& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

std::vector<std::string> keysOf(const std::vector<Finding>& findings) {
    std::vector<std::string> keys;
    for (const Finding& finding : findings) {
        keys.push_back(finding.key);
    }
    return keys;
}

TEST(AlikeNotes, AreOneWithTheFirstKeysAndTheCount) {
    const std::vector<Finding> joined = withAlikeNotesJoined(alike(6));
    ASSERT_EQ(joined.size(), 1U);
    EXPECT_EQ(joined[0].level, FindingLevel::note);
    EXPECT_EQ(joined[0].file, "registers.json");
    EXPECT_EQ(joined[0].key, "K1, K2, K3 and 3 more");
    EXPECT_EQ(joined[0].text, "No rule writes this register. (6 in all)");
}

TEST(AlikeNotes, StayApartUpToFive) {
    EXPECT_THAT(keysOf(withAlikeNotesJoined(alike(5))), ElementsAre("K1", "K2", "K3", "K4", "K5"));
}

TEST(AlikeNotes, TakeThePlaceOfTheFirstAmongOtherFindings) {
    const std::vector<Finding> many = alike(6);
    const Finding before{FindingLevel::error, "device.json", "before", "x"};
    const Finding between{FindingLevel::note, "registers.json", "between", "x"};
    const std::vector<Finding> findings =
        together({{before, many[0], between}, {many.begin() + 1, many.end()}});
    EXPECT_THAT(keysOf(withAlikeNotesJoined(findings)),
                ElementsAre("before", "K1, K2, K3 and 3 more", "between"));
}

TEST(AlikeNotes, OfAnotherFileOrTextAreOthers) {
    const std::vector<Finding> joined = withAlikeNotesJoined(
        together({alike(6), alike(7, FindingLevel::note, "parameters.json"),
                  alike(8, FindingLevel::note, "registers.json", "Another text.")}));
    EXPECT_THAT(keysOf(joined), ElementsAre("K1, K2, K3 and 3 more", "K1, K2, K3 and 4 more",
                                            "K1, K2, K3 and 5 more"));
}

TEST(AlikeNotes, LeaveErrorsAndWarningsApart) {
    for (const FindingLevel level : {FindingLevel::error, FindingLevel::warning}) {
        EXPECT_EQ(withAlikeNotesJoined(alike(9, level)).size(), 9U);
    }
    // An error is no note, whatever it says.
    EXPECT_EQ(withAlikeNotesJoined(together({alike(5), alike(1, FindingLevel::error)})).size(), 6U);
}

TEST(AlikeNotes, MayBeNone) {
    EXPECT_THAT(withAlikeNotesJoined({}), IsEmpty());
}

}  // namespace
}  // namespace lanecfg_test
