#include <lanecfg/host/ToolDRCModel.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

namespace {

using Values = std::map<std::string, std::string>;

/// What a body found in its record.
updater seen;

void rememberRecord(updater& record) {
    seen = record;
}

void changeEverything(updater& record) {
    record.values["A"] = "changed";
    record.values["NEW"] = "added";
    record.enabled = true;
    record.range = {"one", "two", "two"};
}

void changeThenThrow(updater& record) {
    changeEverything(record);
    throw std::runtime_error("body failed");
}

bool acceptAll(updater& record, std::string& message) {
    record.values["A"] = "normalised";
    message = "not of interest";
    return true;
}

bool rejectAll(updater& /*record*/, std::string& message) {
    message = "rejected";
    return false;
}

class SampleModel : public ToolDRCModel {
  public:
    SampleModel() : ToolDRCModel("sample:ip:1.0") { SampleModel::init(); }

    void init() override {
        registerUpdateProc("remember", {"B", "A"}, rememberRecord);
        registerUpdateProc("change", {"A"}, changeEverything);
        registerUpdateProc("throw", {"A"}, changeThenThrow);
        // A record of the model's own making, with something in each field.
        updateProcs_["prefilled"] = {{"prefilled", {{"B", "own"}}, {"own"}, true}, rememberRecord};
        validateProcs_["accept"] = {updater(), acceptAll};
        validateProcs_["reject"] = {updater(), rejectAll};
        updateGuiProcs_["display"] = {updater(), changeEverything};
    }

    void replaceRemember() { registerUpdateProc("remember", {"C"}, changeEverything); }
};

/// A model, and the arguments of a call with something in each of them.
class ToolDRCModelTest : public testing::Test {
  protected:
    void update(const std::string& procName) {
        model_.evalUpdateProc(procName, values_, enabled_, range_);
    }
    void expectUnchanged() const {
        EXPECT_THAT(values_, ElementsAre(Pair("A", "given")));
        EXPECT_TRUE(enabled_);
        EXPECT_THAT(range_, ElementsAre("older"));
    }
    void expectChanged() const {
        EXPECT_THAT(values_, UnorderedElementsAre(Pair("A", "changed"), Pair("NEW", "added")));
        EXPECT_TRUE(enabled_);
        EXPECT_THAT(range_, ElementsAre("one", "two", "two"));
    }

    SampleModel model_;
    Values values_{{"A", "given"}};
    bool enabled_ = true;
    std::vector<std::string> range_{"older"};
};

TEST_F(ToolDRCModelTest, HasItsIdentifier) {
    EXPECT_EQ(model_.getName(), "sample:ip:1.0");
}

TEST_F(ToolDRCModelTest, GivesTheBodyOnlyTheGivenValuesAnEmptyRangeAndNotEnabled) {
    update("prefilled");
    EXPECT_EQ(seen.name, "prefilled");
    EXPECT_THAT(seen.values, ElementsAre(Pair("A", "given")));
    EXPECT_THAT(seen.range, IsEmpty());
    EXPECT_FALSE(seen.enabled);
}

TEST_F(ToolDRCModelTest, CopiesWhatTheBodyLeftBack) {
    enabled_ = false;
    update("change");
    expectChanged();
}

TEST_F(ToolDRCModelTest, EndsNotEnabledWhenTheBodyDoesNotMentionIt) {
    update("remember");
    EXPECT_FALSE(enabled_);
    EXPECT_THAT(range_, IsEmpty());
    EXPECT_THAT(values_, ElementsAre(Pair("A", "given")));
}

TEST_F(ToolDRCModelTest, WorksOnAFreshCopyInEachCall) {
    update("change");
    Values secondValues{{"B", "second"}};
    model_.evalUpdateProc("remember", secondValues, enabled_, range_);
    EXPECT_THAT(seen.values, ElementsAre(Pair("B", "second")));

    std::vector<std::string> argNames;
    model_.getProcArgNames("change", argNames);
    EXPECT_THAT(argNames, ElementsAre("A"));
}

TEST_F(ToolDRCModelTest, ChangesNothingForAnUnknownProcedure) {
    update("unknown");
    expectUnchanged();
}

TEST_F(ToolDRCModelTest, DoesNotTakeADisplayProcedureForAnUpdateProcedure) {
    update("display");
    expectUnchanged();
}

TEST_F(ToolDRCModelTest, LetsAnExceptionOfTheBodyPassAndChangesNothing) {
    EXPECT_THROW(update("throw"), std::runtime_error);
    expectUnchanged();
}

TEST_F(ToolDRCModelTest, EvaluatesDisplayProcedures) {
    enabled_ = false;
    model_.evalUpdateGuiProc("display", values_, enabled_, range_);
    expectChanged();
}

TEST_F(ToolDRCModelTest, ChangesNothingForAnUnknownDisplayProcedure) {
    model_.evalUpdateGuiProc("change", values_, enabled_, range_);
    expectUnchanged();
}

TEST_F(ToolDRCModelTest, GivesValidValuesAnEmptyMessage) {
    std::string message = "older";
    model_.evalValidateProc("accept", values_, message);
    EXPECT_EQ(message, "");
    EXPECT_THAT(values_, ElementsAre(Pair("A", "normalised")));
}

TEST_F(ToolDRCModelTest, GivesTheMessageOfInvalidValues) {
    std::string message = "older";
    model_.evalValidateProc("reject", values_, message);
    EXPECT_EQ(message, "rejected");
    EXPECT_THAT(values_, ElementsAre(Pair("A", "given")));
}

TEST_F(ToolDRCModelTest, ChangesNothingForAnUnknownValidation) {
    std::string message = "older";
    model_.evalValidateProc("change", values_, message);
    EXPECT_EQ(message, "older");
    EXPECT_THAT(values_, ElementsAre(Pair("A", "given")));
}

TEST_F(ToolDRCModelTest, TellsTheDeclaredNamesInPlaceOfOlderOnes) {
    std::vector<std::string> argNames{"older"};
    model_.getProcArgNames("remember", argNames);
    EXPECT_THAT(argNames, ElementsAre("A", "B"));
}

TEST_F(ToolDRCModelTest, LeavesTheNamesForAnUnknownProcedure) {
    std::vector<std::string> argNames{"older"};
    model_.getProcArgNames("unknown", argNames);
    EXPECT_THAT(argNames, ElementsAre("older"));
}

TEST_F(ToolDRCModelTest, ListsItsUpdateProceduresAlphabetically) {
    EXPECT_THAT(model_.getUpdateProcNames(),
                ElementsAre("change", "prefilled", "remember", "throw"));
}

TEST_F(ToolDRCModelTest, TakesTheLastRegistrationOfAName) {
    model_.replaceRemember();
    update("remember");
    expectChanged();

    std::vector<std::string> argNames;
    model_.getProcArgNames("remember", argNames);
    EXPECT_THAT(argNames, ElementsAre("C"));
}

/// Place of a virtual operation in the table, which is what a pointer to it holds, plus 1.
template <typename MemberFunction>
std::size_t slotOf(MemberFunction function) {
    std::ptrdiff_t offsetPlusOne = 0;
    std::memcpy(&offsetPlusOne, &function, sizeof offsetPlusOne);
    return static_cast<std::size_t>(offsetPlusOne - 1) / sizeof(void*);
}

TEST(ToolDRCModelTable, HasTheOperationsInTheOrderOfTheHost) {
    // The destructor, which comes first, takes two slots.
    EXPECT_EQ(slotOf(&ToolDRCModel::init), 2U);
    EXPECT_EQ(slotOf(&ToolDRCModel::evalUpdateProc), 3U);
    EXPECT_EQ(slotOf(&ToolDRCModel::evalValidateProc), 4U);
    EXPECT_EQ(slotOf(&ToolDRCModel::evalUpdateGuiProc), 5U);
    EXPECT_EQ(slotOf(&ToolDRCModel::getProcArgNames), 6U);
}

}  // namespace
