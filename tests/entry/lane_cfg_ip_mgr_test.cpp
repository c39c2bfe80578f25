#include "entry/answering_instance.h"
#include "support/clean_log.h"
#include "support/global_locale.h"

#include <lanecfg/lane_cfg_ip_mgr.h>
#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <locale>
#include <map>
#include <memory>
#include <string>
#include <vector>

using lanecfg_test::AnsweringInstance;
using lanecfg_test::FaultyInstance;
using lanecfg_test::GlobalLocale;
using lanecfg_test::Registry;
using sable_lanecfg::lane_cfg_instance;
using sable_lanecfg::lane_cfg_instance_iter_stable;
using sable_lanecfg::lane_cfg_ip_mgr;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace {

/// A query of the manager, and the key under which an AnsweringInstance answers it.
struct TextQuery {
    const char* key;
    std::map<std::string, std::string> (*ask)(const std::string& instanceName,
                                              const std::string& family,
                                              const std::string& selector);
};

constexpr std::array<TextQuery, 3> textQueries{{
    {"attributes", &lane_cfg_ip_mgr::getAttributes},
    {"memory", &lane_cfg_ip_mgr::getMemContent},
    {"clocks", &lane_cfg_ip_mgr::getOutClkFrequencies},
}};

int updateFirmware(const std::string& name, const std::string& selector) {
    return lane_cfg_ip_mgr::updateELF(name, "SXB", selector, "firmware.elf", "work");
}

void expectEmptyAnswers(const std::string& name, const std::string& selector) {
    for (const TextQuery& query : textQueries) {
        EXPECT_THAT(query.ask(name, "SXB", selector), IsEmpty()) << query.key << ' ' << selector;
    }
    EXPECT_EQ(updateFirmware(name, selector), 0) << selector;
}

void expectOwnAnswers(const std::string& name, const std::string& selector) {
    for (const TextQuery& query : textQueries) {
        EXPECT_THAT(query.ask(name, "SXB", selector), ElementsAre(Pair(query.key, name)))
            << selector;
    }
    EXPECT_EQ(updateFirmware(name, selector), 1) << selector;
}

/// Every way to write the letters of a word in upper and lower case.
std::vector<std::string> allCases(const std::string& word) {
    std::vector<std::string> result{""};
    for (const char letter : word) {
        std::vector<std::string> longer;
        for (const std::string& begin : result) {
            longer.push_back(begin + letter);
            longer.push_back(begin + static_cast<char>(std::toupper(letter)));
        }
        result = longer;
    }
    return result;
}

/// Both kinds of instance have to behave alike in all that these tests ask.
template <class Frame>
class InstanceManagerOfEachKind : public testing::Test {
  protected:
    /// Enters an answering instance; the result expires when the manager deletes it.
    std::weak_ptr<int> enter(const std::string& name) {
        const auto token = std::make_shared<int>();
        instances()[name] = new AnsweringInstance<Frame>(name, token);
        return token;
    }

    static std::map<std::string, Frame*>& instances() { return Registry<Frame>::instances(); }

    const std::string selector = Registry<Frame>::selector;
    const std::string otherSelector = Registry<Frame>::otherSelector;

  private:
    lanecfg_test::EmptyRegistryAtEnd cleanup_;
};

using Frames = testing::Types<lane_cfg_instance, lane_cfg_instance_iter_stable>;

struct FrameNames {
    template <class Frame>
    static std::string GetName(int /*index*/) {
        return Registry<Frame>::selector;
    }
};

TYPED_TEST_SUITE(InstanceManagerOfEachKind, Frames, FrameNames);

TYPED_TEST(InstanceManagerOfEachKind, AnswersInAnyCaseOfTheSelectorsLetters) {
    this->enter("x");
    for (const std::string& spelling : allCases(this->selector)) {
        expectOwnAnswers("x", spelling);
    }
}

TYPED_TEST(InstanceManagerOfEachKind, TakesNoNoticeOfTheFamilyWord) {
    this->enter("x");
    for (const char* const family : {"SXA", "SXB", "SXC", "SXD4", "", "no family"}) {
        for (const TextQuery& query : textQueries) {
            EXPECT_THAT(query.ask("x", family, this->selector), ElementsAre(Pair(query.key, "x")))
                << family;
        }
    }
}

TYPED_TEST(InstanceManagerOfEachKind, AnswersForTheNamedInstanceAlone) {
    this->enter("x");
    this->enter("y");
    expectOwnAnswers("x", this->selector);
    expectOwnAnswers("y", this->selector);
}

TYPED_TEST(InstanceManagerOfEachKind, UnknownNameHasEmptyAnswersAndStaysUnknown) {
    this->enter("x");
    expectEmptyAnswers("X", this->selector);
    EXPECT_EQ(Registry<TypeParam>::find("X"), nullptr);
    EXPECT_EQ(this->instances().size(), 1U);
}

TYPED_TEST(InstanceManagerOfEachKind, OtherSelectorDoesNotSeeTheInstance) {
    this->enter("x");
    expectEmptyAnswers("x", this->otherSelector);
}

TYPED_TEST(InstanceManagerOfEachKind, UnknownSelectorHasEmptyAnswers) {
    this->enter("x");
    for (const std::string& word : {std::string(), this->selector + " ", this->selector + "s",
                                    std::string("other"), this->selector + std::string(1, '\0')}) {
        expectEmptyAnswers("x", word);
    }
}

TYPED_TEST(InstanceManagerOfEachKind, EntryWithoutInstanceHasEmptyAnswers) {
    this->instances()["x"] = nullptr;
    expectEmptyAnswers("x", this->selector);
    EXPECT_EQ(Registry<TypeParam>::find("x"), nullptr);
}

TYPED_TEST(InstanceManagerOfEachKind, GivesTheInstanceItself) {
    this->enter("x");
    EXPECT_EQ(Registry<TypeParam>::find("x"), this->instances().at("x"));
}

TYPED_TEST(InstanceManagerOfEachKind, UpdateElfPassesBothArgumentsOnInOrder) {
    this->enter("x");
    EXPECT_EQ(lane_cfg_ip_mgr::updateELF("x", "SXB", this->selector, "firmware.elf", "work"), 1);
    EXPECT_EQ(lane_cfg_ip_mgr::updateELF("x", "SXB", this->selector, "work", "firmware.elf"), 0);
}

TYPED_TEST(InstanceManagerOfEachKind, ExceptionOfAQueryPassesAndTheInstanceStays) {
    auto* const instance = new FaultyInstance<TypeParam>("x");
    this->instances()["x"] = instance;
    for (const TextQuery& query : textQueries) {
        try {
            query.ask("x", "SXB", this->selector);
            ADD_FAILURE() << "no exception out of " << query.key;
        } catch (const std::string& variable) {
            EXPECT_EQ(variable, "RX_CFG");
        }
    }
    EXPECT_THROW(updateFirmware("x", this->selector), std::string);
    EXPECT_EQ(Registry<TypeParam>::find("x"), instance);
}

TYPED_TEST(InstanceManagerOfEachKind, ReleaseDeletesTheInstanceAndForgetsTheName) {
    const std::weak_ptr<int> instance = this->enter("x");
    const std::weak_ptr<int> other = this->enter("y");
    lane_cfg_ip_mgr::releaseData("x");
    EXPECT_TRUE(instance.expired());
    EXPECT_EQ(this->instances().count("x"), 0U);
    EXPECT_FALSE(other.expired());
    expectOwnAnswers("y", this->selector);
}

TYPED_TEST(InstanceManagerOfEachKind, ReleaseRemovesAnEntryWithoutInstance) {
    this->instances()["x"] = nullptr;
    lane_cfg_ip_mgr::releaseData("x");
    EXPECT_EQ(this->instances().count("x"), 0U);
}

TYPED_TEST(InstanceManagerOfEachKind, ReleaseOfAnUnknownNameDoesNothing) {
    const std::weak_ptr<int> instance = this->enter("x");
    lane_cfg_ip_mgr::releaseData("y");
    EXPECT_FALSE(instance.expired());
    EXPECT_EQ(this->instances().size(), 1U);
}

TYPED_TEST(InstanceManagerOfEachKind, ReleaseTwiceDoesNothingTheSecondTime) {
    this->enter("x");
    lane_cfg_ip_mgr::releaseData("x");
    lane_cfg_ip_mgr::releaseData("x");
    EXPECT_THAT(this->instances(), IsEmpty());
}

TYPED_TEST(InstanceManagerOfEachKind, ReleaseTakesTheNameOutOfTheRegistryItself) {
    this->enter("x");
    this->enter("y");
    lane_cfg_ip_mgr::releaseData(this->instances().begin()->first);
    EXPECT_EQ(this->instances().count("x"), 0U);
    lane_cfg_ip_mgr::releaseData(this->instances().at("y")->instanceName);
    EXPECT_THAT(this->instances(), IsEmpty());
}

class InstanceManager : public testing::Test {
  protected:
    template <class Instance>
    void enterLive(const std::string& name) {
        enter<Instance>(lane_cfg_ip_mgr::m_instances, name);
    }
    void enterStable(const std::string& name) {
        enter<AnsweringInstance<lane_cfg_instance_iter_stable>>(
            lane_cfg_ip_mgr::m_iter_stable_instances, name);
    }

  private:
    template <class Instance, class Frame>
    static void enter(std::map<std::string, Frame*>& instances, const std::string& name) {
        instances[name] = new Instance(name);
    }

    lanecfg_test::EmptyRegistryAtEnd cleanup_;
};

/// Live instance whose table does not fit.
class BramNeedingInstance : public AnsweringInstance<lane_cfg_instance> {
  public:
    using AnsweringInstance::AnsweringInstance;
    bool isFabricBramNeeded() override { return true; }
};

/// Live instance whose table can't be made.
class BramFaultyInstance : public AnsweringInstance<lane_cfg_instance> {
  public:
    using AnsweringInstance::AnsweringInstance;
    bool isFabricBramNeeded() override { throw std::string("RX_CFG"); }
};

TEST_F(InstanceManager, ReleaseOfANameInBothMapsReleasesBoth) {
    enterLive<AnsweringInstance<lane_cfg_instance>>("x");
    enterStable("x");
    lane_cfg_ip_mgr::releaseData("x");
    EXPECT_THAT(lane_cfg_ip_mgr::m_instances, IsEmpty());
    EXPECT_THAT(lane_cfg_ip_mgr::m_iter_stable_instances, IsEmpty());
}

TEST_F(InstanceManager, SameNameMayBeLiveAndStable) {
    enterLive<BramNeedingInstance>("x");
    enterStable("x");
    expectOwnAnswers("x", "live");
    expectOwnAnswers("x", "stable");
}

TEST_F(InstanceManager, FabricMemoryIsTheLiveInstancesAnswer) {
    enterLive<BramNeedingInstance>("large");
    enterLive<AnsweringInstance<lane_cfg_instance>>("small");
    EXPECT_TRUE(lane_cfg_ip_mgr::isFabricBRAMNeeded("large"));
    EXPECT_FALSE(lane_cfg_ip_mgr::isFabricBRAMNeeded("small"));
}

TEST_F(InstanceManager, FabricMemoryIsNotNeededByAnUnknownName) {
    EXPECT_FALSE(lane_cfg_ip_mgr::isFabricBRAMNeeded("x"));
}

TEST_F(InstanceManager, FabricMemoryIsNotNeededByAnEntryWithoutInstance) {
    lane_cfg_ip_mgr::m_instances["x"] = nullptr;
    EXPECT_FALSE(lane_cfg_ip_mgr::isFabricBRAMNeeded("x"));
}

TEST_F(InstanceManager, FabricMemoryIsNotNeededByANameKnownOnlyAsStable) {
    enterStable("x");
    EXPECT_FALSE(lane_cfg_ip_mgr::isFabricBRAMNeeded("x"));
}

TEST_F(InstanceManager, ExceptionOfTheFabricMemoryQueryPasses) {
    enterLive<BramFaultyInstance>("x");
    EXPECT_THROW(lane_cfg_ip_mgr::isFabricBRAMNeeded("x"), std::string);
}

TEST_F(InstanceManager, LogContentIsACopyOfTheLog) {
    const lanecfg_test::CleanLog cleanLog;
    sable_lanecfg::rule_engine_utilities::write_log("first");
    sable_lanecfg::rule_engine_utilities::write_log("second");
    std::vector<std::string> lines = lane_cfg_ip_mgr::getLogContent();
    EXPECT_THAT(lines, ElementsAre("first", "second"));
    lines.clear();
    EXPECT_THAT(lane_cfg_ip_mgr::getLogContent(), ElementsAre("first", "second"));
    sable_lanecfg::rule_engine_utilities::clean_log();
    EXPECT_THAT(lane_cfg_ip_mgr::getLogContent(), IsEmpty());
}

TEST_F(InstanceManager, SingletonPointerIsTheHostsOwn) {
    ASSERT_EQ(lane_cfg_ip_mgr::m_pIpMgr, nullptr);
    lane_cfg_ip_mgr host;
    lane_cfg_ip_mgr::m_pIpMgr = &host;
    enterLive<BramNeedingInstance>("x");
    lane_cfg_ip_mgr::getAttributes("x", "SXB", "live");
    lane_cfg_ip_mgr::releaseData("x");
    EXPECT_EQ(lane_cfg_ip_mgr::m_pIpMgr, &host);
    lane_cfg_ip_mgr::m_pIpMgr = nullptr;
}

/// Takes '1' for a capital 'l', as no locale of the machine does.
class OneIsCapitalEll : public std::ctype<char> {
  protected:
    char do_tolower(char letter) const override {
        return letter == '1' ? 'l' : std::ctype<char>::do_tolower(letter);
    }
    const char* do_tolower(char* begin, const char* end) const override {
        for (; begin != end; ++begin) {
            *begin = do_tolower(*begin);
        }
        return end;
    }
};

TEST_F(InstanceManager, SelectorsLettersAreFoldedByTheGlobalLocale) {
    enterLive<AnsweringInstance<lane_cfg_instance>>("x");
    enterStable("x");
    expectEmptyAnswers("x", "1IVE");
    const GlobalLocale changed(std::locale(std::locale::classic(), new OneIsCapitalEll));
    expectOwnAnswers("x", "1IVE");
    expectOwnAnswers("x", "STAB1E");
}

}  // namespace
