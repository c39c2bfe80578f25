#include "entry/answering_instance.h"
#include "support/captured_messages.h"
#include "support/loader_messages.h"
#include "support/print_rule_value.h"
#include "support/reference_data.h"
#include "support/small_database.h"
#include "support/temporary_directory.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <boost/variant.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using lanecfg_test::AnsweringInstance;
using lanecfg_test::DatabaseFiles;
using lanecfg_test::parseError;
using lanecfg_test::referencePath;
using lanecfg_test::Registry;
using sable_lanecfg::lane_cfg_instance;
using sable_lanecfg::lane_cfg_instance_iter_stable;
using sable_lanecfg::lane_cfg_ip_mgr;
using sable_lanecfg::laneUsageMap;
using sable_lanecfg::ruleValue;
using sable_lanecfg::userParamMap;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

namespace {

constexpr const char* noFamily = "SXZ";
constexpr const char* partName = "sb100-pkg676-2-e-lane-es2-tessera";

/// A request through the request file.
struct FileForm {
    static constexpr const char* word = "FromFile";

    static void initialise(const std::string& name, const std::string& family,
                           const std::string& selector, const DatabaseFiles& files) {
        lane_cfg_ip_mgr::initilizeData(name, family, selector, files.userParameterTypes,
                                       files.userParameters, files.fields, files.deviceData);
    }
};

/// The same request through the host's dictionaries.
struct DictionaryForm {
    static constexpr const char* word = "FromDictionaries";

    static userParamMap userParams() {
        return {{"TX_SETTINGS", {{"CH0", {{"LR0_SETTINGS", {{"TX_LINE_RATE", "12.5"}}}}}}},
                {"RX_SETTINGS", {{"CH0", {{"LR0_SETTINGS", {{"RX_LINE_RATE", "12.5"}}}}}}}};
    }

    static void initialise(const std::string& name, const std::string& family,
                           const std::string& selector, const DatabaseFiles& files,
                           const std::string& part = partName,
                           const userParamMap& params = userParams()) {
        const laneUsageMap laneUsage{{"0",
                                      {{"group", "0"},
                                       {"tx", "0"},
                                       {"rx", "0"},
                                       {"txrate", "A"},
                                       {"rxrate", "A"},
                                       {"rates", "1"}}}};
        lane_cfg_ip_mgr::initilizeDataWithDict(name, family, selector, part, {}, laneUsage, {},
                                               params, files.userParameterTypes, files.fields,
                                               files.deviceData);
    }
};

/// A database on disk, a manager to be filled, and the messages of filling it.
class InitialisationTest : public testing::Test {
  protected:
    template <class Form>
    void initialise(const std::string& name, const std::string& family,
                    const std::string& selector) {
        Form::initialise(name, family, selector, database.writeTo(directory));
    }

    std::vector<std::string> errors() const { return messages.texts(ToolMsgSeverity::error); }

    lanecfg_test::SmallDatabase database;
    lanecfg_test::TemporaryDirectory directory;
    lanecfg_test::CapturedMessages messages;

  private:
    lanecfg_test::EmptyRegistryAtEnd cleanup_;
};

template <class FrameOfCase, class FormOfCase>
struct Case {
    using Frame = FrameOfCase;
    using Form = FormOfCase;
};

/// Both forms have to fill both kinds of registry in the same way.
template <class CaseOfTest>
class InitialisationOfEachKind : public InitialisationTest {
  protected:
    using Frame = typename CaseOfTest::Frame;

    /// An instance of before, which the test deletes itself once it is displaced.
    Frame* enterEarlier(const std::string& name) {
        auto* const instance = new AnsweringInstance<Frame>(name);
        instances()[name] = instance;
        return instance;
    }

    void initialiseUnder(const std::string& selector, const std::string& name) {
        this->template initialise<typename CaseOfTest::Form>(name, noFamily, selector);
    }
    void initialiseOwn(const std::string& name) { initialiseUnder(ownSelector, name); }

    static std::map<std::string, Frame*>& instances() { return Registry<Frame>::instances(); }

    const std::string ownSelector = Registry<Frame>::selector;
};

using Cases =
    testing::Types<Case<lane_cfg_instance, FileForm>, Case<lane_cfg_instance, DictionaryForm>,
                   Case<lane_cfg_instance_iter_stable, FileForm>,
                   Case<lane_cfg_instance_iter_stable, DictionaryForm>>;

struct CaseNames {
    template <class CaseOfTest>
    static std::string GetName(int /*index*/) {
        return std::string(Registry<typename CaseOfTest::Frame>::selector) + CaseOfTest::Form::word;
    }
};

TYPED_TEST_SUITE(InitialisationOfEachKind, Cases, CaseNames);

TYPED_TEST(InitialisationOfEachKind, UnknownFamilyEntersTheNameWithoutInstance) {
    this->initialiseOwn("x");
    EXPECT_THAT(this->instances(), ElementsAre(Pair("x", nullptr)));
    EXPECT_THAT(lane_cfg_ip_mgr::getAttributes("x", noFamily, this->ownSelector), IsEmpty());
    EXPECT_THAT(this->errors(), IsEmpty());
}

TYPED_TEST(InitialisationOfEachKind, ForgetsEveryEarlierInstanceWithoutDeletingIt) {
    const std::unique_ptr<typename TestFixture::Frame> first(this->enterEarlier("a"));
    const std::unique_ptr<typename TestFixture::Frame> second(this->enterEarlier("c"));
    this->initialiseOwn("b");
    EXPECT_THAT(this->instances(), ElementsAre(Pair("b", nullptr)));
    EXPECT_THAT(lane_cfg_ip_mgr::getAttributes("a", noFamily, this->ownSelector), IsEmpty());
    EXPECT_THAT(first->getAttributes(), ElementsAre(Pair("attributes", "a")));
    EXPECT_THAT(second->getAttributes(), ElementsAre(Pair("attributes", "c")));
}

TYPED_TEST(InitialisationOfEachKind, ReplacesTheInstanceOfTheSameNameWithoutDeletingIt) {
    const std::unique_ptr<typename TestFixture::Frame> earlier(this->enterEarlier("x"));
    this->initialiseOwn("x");
    EXPECT_THAT(this->instances(), ElementsAre(Pair("x", nullptr)));
    EXPECT_THAT(earlier->getAttributes(), ElementsAre(Pair("attributes", "x")));
}

TYPED_TEST(InitialisationOfEachKind, TakesANameOutOfTheRegistryItself) {
    const std::unique_ptr<typename TestFixture::Frame> earlier(this->enterEarlier("x"));
    this->initialiseOwn(this->instances().begin()->first);
    EXPECT_THAT(this->instances(), ElementsAre(Pair("x", nullptr)));
}

TYPED_TEST(InitialisationOfEachKind, LeavesTheOtherSelectorsInstancesAlone) {
    auto* const earlier = this->enterEarlier("x");
    this->initialiseUnder(Registry<typename TestFixture::Frame>::otherSelector, "x");
    EXPECT_THAT(this->instances(), ElementsAre(Pair("x", earlier)));
}

TYPED_TEST(InitialisationOfEachKind, TakesTheSelectorInAnyCaseOfLetters) {
    std::string capital = this->ownSelector;
    capital[0] = static_cast<char>(capital[0] - 'a' + 'A');
    this->initialiseUnder(capital, "x");
    EXPECT_EQ(this->instances().count("x"), 1U);
}

TYPED_TEST(InitialisationOfEachKind, UnknownSelectorLoadsAndChangesNothing) {
    auto* const earlier = this->enterEarlier("x");
    this->database.registers["TX_CFG"].erase("Offset");
    this->initialiseUnder("other", "y");
    EXPECT_THAT(this->errors(), Contains(parseError(this->directory.file("registers.json"))));
    EXPECT_THAT(this->instances(), ElementsAre(Pair("x", earlier)));
    EXPECT_EQ(lane_cfg_ip_mgr::m_instances.size() + lane_cfg_ip_mgr::m_iter_stable_instances.size(),
              1U);
}

TYPED_TEST(InitialisationOfEachKind, UnusableParametersAreReportedAndChangeNothing) {
    auto* const earlier = this->enterEarlier("x");
    this->database.parameters.erase("RX_LINE_RATE");
    this->initialiseOwn("y");
    EXPECT_THAT(this->errors(), ElementsAre(lanecfg_test::unknownParameter("RX_LINE_RATE"),
                                            lanecfg_test::unusableParameters()));
    EXPECT_THAT(this->instances(), ElementsAre(Pair("x", earlier)));
    EXPECT_THAT(lane_cfg_ip_mgr::getAttributes("y", noFamily, this->ownSelector), IsEmpty());
}

TYPED_TEST(InitialisationOfEachKind, FaultOfTheFieldsFileIsReportedAndTheNameEntered) {
    this->database.registers["TX_CFG"].erase("Offset");
    this->initialiseOwn("x");
    EXPECT_THAT(this->errors(), ElementsAre(parseError(this->directory.file("registers.json"))));
    EXPECT_EQ(this->instances().count("x"), 1U);
}

using Initialisation = InitialisationTest;

TEST_F(Initialisation, FamilyWithoutFrozenRulesEntersTheStableNameWithoutInstance) {
    for (const char* const family : {"SXA", "SXC"}) {
        initialise<FileForm>(family, family, "stable");
        EXPECT_THAT(lane_cfg_ip_mgr::m_iter_stable_instances, ElementsAre(Pair(family, nullptr)));
    }
}

TEST_F(Initialisation, MissingRequestFileIsReportedAndChangesNothing) {
    auto* const earlier = new AnsweringInstance<lane_cfg_instance>("x");
    lane_cfg_ip_mgr::m_instances["x"] = earlier;
    DatabaseFiles files = database.writeTo(directory);
    files.userParameters = directory.file("absent.json");
    FileForm::initialise("y", noFamily, "live", files);
    EXPECT_THAT(errors(), Contains(parseError(files.userParameters)));
    EXPECT_THAT(lane_cfg_ip_mgr::m_instances, ElementsAre(Pair("x", earlier)));
}

TEST_F(Initialisation, DictionaryWithoutParametersReadsAFileWithoutNameAndChangesNothing) {
    auto* const earlier = new AnsweringInstance<lane_cfg_instance>("x");
    lane_cfg_ip_mgr::m_instances["x"] = earlier;
    DictionaryForm::initialise("y", noFamily, "live", database.writeTo(directory), partName, {});
    EXPECT_THAT(errors(), Contains(parseError("")));
    EXPECT_THAT(lane_cfg_ip_mgr::m_instances, ElementsAre(Pair("x", earlier)));
}

TEST_F(Initialisation, MalformedPartNamePassesAsExceptionAndChangesNothing) {
    auto* const earlier = new AnsweringInstance<lane_cfg_instance>("x");
    lane_cfg_ip_mgr::m_instances["x"] = earlier;
    const DatabaseFiles files = database.writeTo(directory);
    try {
        DictionaryForm::initialise("y", noFamily, "live", files, "sb100-pkg676");
        ADD_FAILURE() << "a part name of two tokens was taken";
    } catch (const std::invalid_argument& fault) {
        EXPECT_THAT(fault.what(), HasSubstr("sb100-pkg676"));
    }
    EXPECT_THAT(lane_cfg_ip_mgr::m_instances, ElementsAre(Pair("x", earlier)));
}

TEST_F(Initialisation, CreatingAnUnknownFamilyGivesNull) {
    for (const char* const family : {"", "sxa", "SXA ", "SXD", "SXZ"}) {
        EXPECT_EQ(lane_cfg_ip_mgr::createLaneCfgInstance("x", family, {}, {}, {}, {}, {}, {}),
                  nullptr)
            << family;
    }
}

TEST_F(Initialisation, CreatingAFamilyWithoutFrozenRulesGivesNull) {
    for (const char* const family : {"", "sxb", "SXB ", "SXA", "SXC"}) {
        EXPECT_EQ(
            lane_cfg_ip_mgr::createLaneCfgIterStableInstance("x", family, {}, {}, {}, {}, {}, {}),
            nullptr)
            << family;
    }
}

TEST_F(Initialisation, OnlyTheNewestLiveInstanceIsReachable) {
    initialise<FileForm>("a", "SXA", "live");
    const std::unique_ptr<lane_cfg_instance> displaced(lane_cfg_ip_mgr::getIPInstance("a"));
    ASSERT_NE(displaced, nullptr);
    initialise<FileForm>("b", "SXA", "live");
    EXPECT_EQ(lane_cfg_ip_mgr::getIPInstance("a"), nullptr);
    EXPECT_THAT(lane_cfg_ip_mgr::getAttributes("a", "SXA", "live"), IsEmpty());
    ASSERT_NE(lane_cfg_ip_mgr::getIPInstance("b"), nullptr);
    EXPECT_EQ(lane_cfg_ip_mgr::getIPInstance("b")->instanceName, "b");
    EXPECT_EQ(displaced->instanceName, "a");
}

TEST_F(Initialisation, FamilyOfTheWordIsMadeAndItsRulesHaveRun) {
    initialise<FileForm>("x", "SXA", "live");
    const lane_cfg_instance* const instance = lane_cfg_ip_mgr::getIPInstance("x");
    ASSERT_NE(instance, nullptr);
    EXPECT_EQ(instance->familyName, "SXA");
    ASSERT_EQ(instance->blockVarMap.size(), 4U);
    for (const auto& channel : instance->blockVarMap) {
        EXPECT_EQ(channel.size(), 1U);
    }
}

/// What both forms of the small request have to leave in the instance.
void expectSmallRequest(const lane_cfg_instance& instance) {
    EXPECT_EQ(instance.instanceName, "x");
    ASSERT_EQ(instance.channelUsage.size(), 1U);
    EXPECT_EQ(instance.channelUsage[0].group, "0");
    EXPECT_THAT(instance.channelUsage[0].rxrate, ElementsAre("A"));
    ASSERT_EQ(instance.paramTypes.count("RX_LINE_RATE"), 1U);
    EXPECT_EQ(instance.paramTypes.at("RX_LINE_RATE").default_value, "10.3125");
    ASSERT_EQ(instance.userParams.size(), 2U);
    EXPECT_EQ(instance.userParams[0].at(0).at(0).at("TX_LINE_RATE"), ruleValue(12.5));
    EXPECT_EQ(instance.userParams[1].at(0).at(0).at("RX_LINE_RATE"), ruleValue(12.5));
    ASSERT_EQ(instance.attributes.count("RX_CFG"), 1U);
    EXPECT_EQ(instance.attributes.at("RX_CFG").Offset, "0x4");
    EXPECT_THAT(instance.settings, Contains(Pair("FLCPLLRANGE", ElementsAre("8.0", "16.375"))));
}

TEST_F(Initialisation, RequestFileReachesTheInstanceWhole) {
    initialise<FileForm>("x", "SXA", "live");
    ASSERT_NE(lane_cfg_ip_mgr::getIPInstance("x"), nullptr);
    expectSmallRequest(*lane_cfg_ip_mgr::getIPInstance("x"));
    EXPECT_THAT(lane_cfg_ip_mgr::getIPInstance("x")->settings.at("siliconRev"), ElementsAre(""));
}

TEST_F(Initialisation, DictionariesReachTheInstanceWhole) {
    initialise<DictionaryForm>("x", "SXA", "live");
    ASSERT_NE(lane_cfg_ip_mgr::getIPInstance("x"), nullptr);
    expectSmallRequest(*lane_cfg_ip_mgr::getIPInstance("x"));
    EXPECT_THAT(lane_cfg_ip_mgr::getIPInstance("x")->settings.at("siliconRev"), ElementsAre("es2"));
}

TEST_F(Initialisation, ExceptionOfAConstructorPassesAndLeavesItsSelectorEmpty) {
    const std::unique_ptr<lane_cfg_instance> displaced(
        new AnsweringInstance<lane_cfg_instance>("x"));
    lane_cfg_ip_mgr::m_instances["x"] = displaced.get();
    auto* const stable = new AnsweringInstance<lane_cfg_instance_iter_stable>("x");
    lane_cfg_ip_mgr::m_iter_stable_instances["x"] = stable;
    // No rule gives this field a value, so its register can't be composed.
    database.registers["RCALBG_CFG0"] = {{"dstSubBlock", "rcalbg_0"},
                                         {"Offset", "0x8"},
                                         {"fields", {{"RCALBG_CFG0.NOBODYS", {0, 1}}}}};
    EXPECT_THROW(initialise<FileForm>("y", "SXA", "live"), boost::bad_get);
    EXPECT_THROW(initialise<DictionaryForm>("y", "SXA", "live"), boost::bad_get);
    EXPECT_THAT(lane_cfg_ip_mgr::m_instances, IsEmpty());
    EXPECT_THAT(lane_cfg_ip_mgr::m_iter_stable_instances, ElementsAre(Pair("x", stable)));
    EXPECT_THAT(displaced->getAttributes(), ElementsAre(Pair("attributes", "x")));
}

TEST_F(Initialisation, ManagerAnswersAsTheInstanceDoes) {
    DatabaseFiles files = database.writeTo(directory);
    files.userParameterTypes = referencePath("SXA", "parameters.json");
    files.fields = referencePath("SXA", "registers.json");
    files.deviceData = referencePath("SXA", "device.json");
    FileForm::initialise("x", "SXA", "live", files);
    EXPECT_THAT(errors(), IsEmpty());
    ASSERT_NE(lane_cfg_ip_mgr::getIPInstance("x"), nullptr);
    const auto attributes = lane_cfg_ip_mgr::getAttributes("x", "SXA", "live");
    EXPECT_THAT(attributes, Not(IsEmpty()));
    EXPECT_EQ(attributes, lane_cfg_ip_mgr::getIPInstance("x")->getAttributes());
    EXPECT_THAT(lane_cfg_ip_mgr::getOutClkFrequencies("x", "SXA", "live"), IsEmpty());
}

TEST_F(Initialisation, ReleaseForgetsAnInitialisedInstance) {
    initialise<FileForm>("x", "SXA", "live");
    lane_cfg_ip_mgr::releaseData("x");
    EXPECT_EQ(lane_cfg_ip_mgr::getIPInstance("x"), nullptr);
    EXPECT_THAT(lane_cfg_ip_mgr::getAttributes("x", "SXA", "live"), IsEmpty());
}

}  // namespace
