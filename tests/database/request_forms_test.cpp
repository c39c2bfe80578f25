#include "database/database_test.h"
#include "database/random_request.h"
#include "support/compressed_content.h"

#include <lanecfg/gt_db_load.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

using lanecfg_test::DatabaseFiles;
using lanecfg_test::RandomRequest;
using sable_lanecfg::channelUsageInfo;
using sable_lanecfg::gt_db_load;
using sable_lanecfg::quadsUsageInfo;
using sable_lanecfg::settingsMap;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// What holds for every request; the parameter is the seed of a random one.
class RequestForms : public lanecfg_test::DatabaseTest,
                     public testing::WithParamInterface<unsigned> {
  protected:
    RequestForms() : request_(GetParam()) {
        database.parameters = request_.types;
        database.request = request_.file;
        files_ = database.writeTo(directory);
    }

    RandomRequest request_;
    DatabaseFiles files_;
};

bool equal(const quadsUsageInfo& one, const quadsUsageInfo& other) {
    return one.quadName == other.quadName && one.channels == other.channels &&
           one.usageKey == other.usageKey && one.MSTRCLK == other.MSTRCLK &&
           one.IS_CURRENT_QUAD == other.IS_CURRENT_QUAD;
}

bool equal(const channelUsageInfo& one, const channelUsageInfo& other) {
    return one.group == other.group && one.usageMode == other.usageMode &&
           one.usageFlag == other.usageFlag && one.txrate == other.txrate &&
           one.rxrate == other.rxrate && one.tx == other.tx && one.rx == other.rx &&
           one.rates == other.rates;
}

void expectEqualRequests(const gt_db_load& one, const gt_db_load& other) {
    EXPECT_TRUE(
        std::equal(one.m_quadsUsage.begin(), one.m_quadsUsage.end(), other.m_quadsUsage.begin(),
                   other.m_quadsUsage.end(), [](const auto& first, const auto& second) {
                       return first.first == second.first && equal(*first.second, *second.second);
                   }));
    EXPECT_TRUE(
        std::equal(one.m_channelUsage.begin(), one.m_channelUsage.end(),
                   other.m_channelUsage.begin(), other.m_channelUsage.end(),
                   [](const auto& first, const auto& second) { return equal(first, second); }));
    EXPECT_TRUE(one.m_userParams == other.m_userParams);
}

TEST_P(RequestForms, OfOneRequestEndInEqualMembers) {
    const gt_db_load fromFile = loadFiles(files_);
    gt_db_load fromDictionaries = fromFile;

    EXPECT_TRUE(
        readRequest(fromDictionaries, request_.userParams, request_.laneUsage, request_.quadUsage));

    EXPECT_TRUE(fromFile.m_loaded);
    expectEqualRequests(fromDictionaries, fromFile);
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_P(RequestForms, HoldEveryParameterThatTheRequestGives) {
    const gt_db_load loader = loadFiles(files_);

    ASSERT_THAT(loader.m_userParams, SizeIs(request_.file["userParams"].size()));
    for (std::size_t direction = 0; direction < loader.m_userParams.size(); ++direction) {
        const nlohmann::json& lanes = request_.file["userParams"][direction];
        ASSERT_THAT(loader.m_userParams[direction], SizeIs(lanes.size()));
        for (std::size_t lane = 0; lane < lanes.size(); ++lane) {
            ASSERT_THAT(loader.m_userParams[direction][lane], SizeIs(lanes[lane].size()));
            for (std::size_t rate = 0; rate < lanes[lane].size(); ++rate) {
                EXPECT_THAT(loader.m_userParams[direction][lane][rate],
                            SizeIs(lanes[lane][rate].size()));
            }
        }
    }
}

TEST_P(RequestForms, ReadPackedFilesAsPlainOnes) {
    const gt_db_load plain = loadFiles(files_);
    DatabaseFiles packed;
    packed.userParameterTypes = directory.write(
        "types.gz", lanecfg_test::gzipped(lanecfg_test::readFile(files_.userParameterTypes)));
    packed.userParameters = directory.write(
        "request.z", lanecfg_test::zlibCompressed(lanecfg_test::readFile(files_.userParameters)));
    packed.fields = directory.write(
        "fields.z", lanecfg_test::zlibCompressed(lanecfg_test::readFile(files_.fields)));
    packed.deviceData = directory.write(
        "device.gz", lanecfg_test::gzipped(lanecfg_test::readFile(files_.deviceData)));

    const gt_db_load loader = loadFiles(packed);

    expectEqualRequests(loader, plain);
    EXPECT_EQ(loader.m_deviceData, plain.m_deviceData);
    EXPECT_EQ(loader.m_paramTypes.size(), plain.m_paramTypes.size());
    EXPECT_EQ(loader.m_fields.at("TX_CFG").fields, plain.m_fields.at("TX_CFG").fields);
    EXPECT_THAT(messages.records(), IsEmpty());
}

TEST_P(RequestForms, KeepTheNumericOrderOfTwelveOrMoreRates) {
    gt_db_load loader = loadFiles(files_);
    loader.m_paramTypes["N"].type = "int";
    std::mt19937 random(GetParam());
    const unsigned rates = std::uniform_int_distribution<unsigned>(12, 150)(random);
    settingsMap settings;
    for (unsigned rate = 0; rate < rates; ++rate) {
        settings["0"]["LR" + std::to_string(rate) + "_SETTINGS"]["N"] = std::to_string(rate);
    }

    EXPECT_TRUE(readRequest(loader, {{"RX_SETTINGS", settings}}, {}, {}));

    ASSERT_THAT(loader.m_userParams.at(0).at(0), SizeIs(rates));
    for (unsigned rate = 0; rate < rates; ++rate) {
        EXPECT_EQ(boost::get<unsigned>(loader.m_userParams[0][0][rate].at("N")), rate);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RequestForms, testing::Range(0U, 50U));

}  // namespace
