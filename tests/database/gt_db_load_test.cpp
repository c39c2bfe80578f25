#include "database/database_test.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <new>
#include <stdexcept>
#include <string>

using lanecfg_test::missingQuadUsage;
using lanecfg_test::parseError;
using lanecfg_test::unconvertibleParameters;
using lanecfg_test::unknownParameter;
using lanecfg_test::unusableLaneUsage;
using lanecfg_test::unusableParameters;
using sable_lanecfg::gt_db_load;
using sable_lanecfg::ruleValue;
using sable_lanecfg::userParamMap;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Key;
using testing::SizeIs;

namespace {

/// While one lives, an allocation that may answer "nothing" does so.
class NoMemory {
  public:
    NoMemory() { instead = true; }
    ~NoMemory() { instead = false; }
    NoMemory(const NoMemory&) = delete;
    NoMemory& operator=(const NoMemory&) = delete;

    static bool instead;
};

bool NoMemory::instead = false;

const std::string partName = "XC9-PKG1-2-E-ARCH1-es7-tessera";

/// One transmit parameter that the small database knows.
const userParamMap transmitOnly = {
    {"TX_SETTINGS", {{"CH1", {{"LR0_SETTINGS", {{"TX_LINE_RATE", "25.5"}}}}}}}};

using GtDbLoad = lanecfg_test::DatabaseTest;

}  // namespace

// The allocation functions of the whole test program, so that one can fail on demand.
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    if (NoMemory::instead) {
        return nullptr;
    }
    try {
        return ::operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    ::operator delete(memory);
}

namespace {

TEST_F(GtDbLoad, LoadsAllFourFilesWithoutAMessage) {
    const gt_db_load loader = load();

    EXPECT_TRUE(loader.m_loaded);
    EXPECT_THAT(loader.m_deviceData, ElementsAre(Key("FLCPLLRANGE"), Key("siliconRev")));
    EXPECT_THAT(loader.m_paramTypes, ElementsAre(Key("RX_LINE_RATE"), Key("TX_LINE_RATE")));
    EXPECT_THAT(loader.m_fields, ElementsAre(Key("RX_CFG"), Key("TX_CFG")));
    EXPECT_THAT(loader.m_channelUsage, SizeIs(1));
    EXPECT_THAT(loader.m_userParams, SizeIs(2));
    EXPECT_THAT(loader.m_quadsUsage, IsEmpty());
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(GtDbLoad, GivesAnEmptyPartNameAnEmptySiliconRevision) {
    EXPECT_THAT(load().m_deviceData.at("siliconRev"), ElementsAre(""));
}

TEST_F(GtDbLoad, TakesTheSiliconRevisionOfThePart) {
    EXPECT_THAT(load(partName).m_deviceData.at("siliconRev"), ElementsAre("es7"));
}

TEST_F(GtDbLoad, PrefersTheSiliconRevisionOfTheDeviceData) {
    database.device["-3"]["siliconRev"] = "prod";

    EXPECT_THAT(load(partName).m_deviceData.at("siliconRev"), ElementsAre("prod"));
}

TEST_F(GtDbLoad, ReadsTheDatabaseAtOneGradeWhateverThePartHas) {
    database.device["-2"]["A"] = "grade of the part";
    database.device["-3"]["A"] = "grade of the database";

    EXPECT_THAT(load(partName).m_deviceData.at("A"), ElementsAre("grade of the database"));
}

TEST_F(GtDbLoad, ReportsThePart) {
    static_cast<void>(load(partName));

    ASSERT_THAT(messages.records(), SizeIs(1));
    const ToolMsgRecord& record = messages.records().front();
    EXPECT_EQ(record.argumentCount, 0);
    EXPECT_EQ(record.file, "ip/rule_engine/gt_rule_engine/src/gt_db_load");
    EXPECT_EQ(record.line, 37);
    EXPECT_EQ(record.subsystem, "ip");
    EXPECT_EQ(record.severity, 0x1000000U);
    EXPECT_EQ(record.format,
              "Device data: speedGrade: -2 - device: XC9 - package: PKG1 - "
              "siliconRev:es7 - tempGrade: E - architecture: ARCH1");
    EXPECT_THAT(record.arguments, IsEmpty());
}

TEST_F(GtDbLoad, ReportsThePartBeforeItReadsAFile) {
    const std::string missing = directory.file("missing.json");
    const gt_db_load loader({}, {{"OTHER_SETTINGS", {}}}, {}, {}, missing, "", missing, missing,
                            partName);

    EXPECT_THAT(messages.texts(), ElementsAre(HasSubstr("Device data"), parseError(missing),
                                              parseError(missing), parseError(missing)));
}

TEST_F(GtDbLoad, LetsTheExceptionOfARejectedPartNamePass) {
    EXPECT_THROW(load("XC9-PKG1-2-E-ARCH1"), std::invalid_argument);
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(GtDbLoad, TakesRevisionEs1WhenThereIsNoMemoryForThePart) {
    const NoMemory noMemory;
    const gt_db_load loader = loadDictionary(transmitOnly, partName);

    EXPECT_THAT(loader.m_deviceData.at("siliconRev"), ElementsAre("es1"));
    EXPECT_THAT(loader.m_userParams, SizeIs(1));  // the family is unknown
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(GtDbLoad, TakesTheDictionariesWhenTheyHoldASection) {
    const gt_db_load loader = loadDictionary(transmitOnly);

    EXPECT_TRUE(loader.m_loaded);
    ASSERT_THAT(loader.m_userParams, SizeIs(1));
    EXPECT_EQ(loader.m_userParams.at(0).at(0).at(0).at("TX_LINE_RATE"), ruleValue(25.5));
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(GtDbLoad, HandsTheFamilyOfThePartToTheDictionaryForm) {
    const gt_db_load loader = loadDictionary(transmitOnly, partName);

    ASSERT_THAT(loader.m_userParams, SizeIs(2));
    EXPECT_THAT(loader.m_userParams.at(0), ElementsAre(IsEmpty(), SizeIs(1), IsEmpty(), IsEmpty()));
    EXPECT_THAT(loader.m_userParams.at(1), SizeIs(4));
}

TEST_F(GtDbLoad, IgnoresOptions) {
    const lanecfg_test::DatabaseFiles files = database.writeTo(directory);
    const gt_db_load loader({{"siliconRev", "es3"}}, {}, {}, {}, files.userParameterTypes,
                            files.userParameters, files.fields, files.deviceData, "");

    EXPECT_THAT(loader.m_deviceData.at("siliconRev"), ElementsAre(""));
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_F(GtDbLoad, TellsWhenTheUserParametersOfTheFileFail) {
    database.request.erase("userParams");

    EXPECT_FALSE(load().m_loaded);
    EXPECT_THAT(errors(), ElementsAre(unconvertibleParameters(), unusableParameters()));
}

TEST_F(GtDbLoad, TellsWhenTheUserParametersOfTheDictionariesFail) {
    EXPECT_FALSE(
        loadDictionary({{"RX_SETTINGS", {{"0", {{"LR0_SETTINGS", {{"NEW", "1"}}}}}}}}).m_loaded);
    EXPECT_THAT(errors(), ElementsAre(unknownParameter("NEW"), unusableParameters()));
}

TEST_F(GtDbLoad, ReadsDeviceDataThenTypesThenFieldsThenTheRequest) {
    const auto missing = [this](const std::string& name) { return directory.file(name); };
    const gt_db_load loader =
        loadFiles({missing("types"), missing("request"), missing("fields"), missing("device")});

    EXPECT_FALSE(loader.m_loaded);
    EXPECT_THAT(errors(), ElementsAre(parseError(missing("device")), parseError(missing("types")),
                                      parseError(missing("fields")), parseError(missing("request")),
                                      missingQuadUsage(missing("request")),
                                      unusableLaneUsage(missing("request")),
                                      unconvertibleParameters(), unusableParameters()));
}

TEST_F(GtDbLoad, LeavesTheRecordsOfQuadsToThoseWhoCopiedThem) {
    database.request["quadUsage"] =
        nlohmann::json::parse(R"({"TX_QUAD_CH": [{"TX_Q0": ["CH0"]}]})");
    std::map<std::string, sable_lanecfg::quadsUsageInfo*> copied;
    {
        const gt_db_load loader = load();
        copied = loader.m_quadsUsage;
    }

    ASSERT_THAT(copied, ElementsAre(Key("TX_Q0")));
    EXPECT_THAT(copied.at("TX_Q0")->channels, ElementsAre("CH0"));
}

}  // namespace
