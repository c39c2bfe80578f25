#include "families/sxb/sxb_pll_rules.h"
#include "families/sxb/sxb_rx_rules.h"
#include "families/sxb/sxb_tx_rules.h"
#include "rate_table_replay.h"
#include "support/reference_data.h"
#include "sxb_expected_catalogue.h"

#include <lanecfg/gt_db_load.h>
#include <lanecfg/gt_rule_engine.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

// The three rule sets run over rates on the family's own database, as an instance runs them.

namespace sable_lanecfg {
namespace {

using lanecfg_test::ExpectedField;
using lanecfg_test::expectedSxbFields;
using lanecfg_test::referenceDatabase;
using testing::SizeIs;
using namespace std::string_literals;

constexpr std::size_t channels = 4;
using rateParameters = std::map<std::string, ruleValue>;
/// Registers one set of rules.
using ruleSet = void (*)(gt_rule_engine&);
/// Fields and words of a snapshot.
using registerValues = std::map<std::string, unsigned>;

class SxbReferenceDatabase : public testing::Test {
  protected:
    void run(const userParamStore& params,
             const std::vector<ruleSet>& sets = {registerSxbRxRules, registerSxbTxRules,
                                                 registerSxbPllRules},
             const std::vector<channelUsageInfo>& usage = {}) {
        engine = std::make_unique<gt_rule_engine>("SXB", usage, loaded.m_paramTypes, params,
                                                  loaded.m_fields, loaded.m_deviceData);
        for (const ruleSet registerRules : sets) {
            registerRules(*engine);
        }
        engine->runBlockRules();
    }

    /// Fields and words of every snapshot, channel by channel.
    std::vector<registerValues> allRegisterValues() const {
        std::vector<registerValues> all;
        for (const auto& passes : engine->blockVarMap) {
            for (const variableMap& snapshot : passes) {
                all.push_back(registerValuesOf(snapshot));
            }
        }
        return all;
    }

    /// Words that no configuration changes, made of the constants of the second list.
    registerValues constantWords() const {
        registerValues words;
        std::set<std::string> changing;
        for (const ExpectedField& row : expectedSxbFields()) {
            if (row.kind == fieldKind::constant) {
                words[row.registerName] += row.value << firstBitOf(row);
            } else {
                changing.insert(row.registerName);
            }
        }
        for (const std::string& name : changing) {
            words.erase(name);
        }
        return words;
    }

    /// Expects of every snapshot that fields fit the database, and that words hold them.
    void expectEveryWordHoldsItsFields() const {
        for (const auto& passes : engine->blockVarMap) {
            for (const variableMap& snapshot : passes) {
                for (const auto& [name, record] : loaded.m_fields) {
                    expectWordHoldsItsFields(snapshot, name, record);
                }
            }
        }
    }

    const gt_db_load loaded = referenceDatabase("SXB");
    std::unique_ptr<gt_rule_engine> engine;

  private:
    registerValues registerValuesOf(const variableMap& snapshot) const {
        registerValues values;
        for (const auto& [name, record] : loaded.m_fields) {
            values[name] = boost::get<unsigned>(snapshot.at(name).value);
            for (const auto& [field, place] : record.fields) {
                values[field] = boost::get<unsigned>(snapshot.at(field).value);
            }
        }
        return values;
    }

    unsigned firstBitOf(const ExpectedField& row) const {
        if (row.field.empty()) {
            return 0;
        }
        const auto& places = loaded.m_fields.at(row.registerName).fields;
        return static_cast<unsigned>(places.at(row.registerName + "." + row.field).at(0));
    }

    static void expectWordHoldsItsFields(const variableMap& snapshot, const std::string& name,
                                         const attributeInfo& record) {
        unsigned long long word = 0;
        for (const auto& [field, place] : record.fields) {
            const unsigned long long value = boost::get<unsigned>(snapshot.at(field).value);
            EXPECT_LT(value, 1ULL << place.at(1)) << field;
            word += value << place.at(0);
        }
        EXPECT_EQ(boost::get<unsigned>(snapshot.at(name).value), word) << name;
    }
};

TEST_F(SxbReferenceDatabase, LoadsAsTheLibraryLoadsIt) {
    ASSERT_TRUE(loaded.m_loaded);
    EXPECT_THAT(loaded.m_fields, SizeIs(195));
    EXPECT_THAT(loaded.m_paramTypes, SizeIs(171));
    EXPECT_EQ(loaded.m_deviceData.at("FLCPLLRANGE_MAX").front(), "16.375");
}

TEST_F(SxbReferenceDatabase, HoldsTheFieldsOfAnIdleQuad) {
    run({});
    ASSERT_THAT(engine->blockVarMap, SizeIs(channels));
    expectEveryWordHoldsItsFields();
}

/// Rates at random, from values that requests may have.
class SxbReferenceDatabaseWithRandomRates : public SxbReferenceDatabase,
                                            public testing::WithParamInterface<unsigned> {
  protected:
    ruleValue oneOf(const std::vector<ruleValue>& values) {
        return values[std::uniform_int_distribution<std::size_t>(0, values.size() - 1)(random)];
    }

    ruleValue number(unsigned first, unsigned last) {
        return std::uniform_int_distribution<unsigned>(first, last)(random);
    }

    ruleValue flag() { return number(0, 1) == ruleValue(1U); }

    ruleValue digits(int count) {
        std::string text;
        while (text.size() < static_cast<std::size_t>(count)) {
            text += flag() == ruleValue(true) ? '1' : '0';
        }
        return text;
    }

    rateParameters sideAtRandom(const std::string& side) {
        return {
            {side + "_LINE_RATE", oneOf({1.25, 2.5, 5.0, 8.0, 10.3125, 16.0, 25.78125})},
            {side + "_INT_DATA_WIDTH", oneOf({16U, 20U, 32U, 40U, 64U, 80U})},
            {side + "_USER_DATA_WIDTH", oneOf({16U, 20U, 32U, 40U, 64U, 80U, 128U, 160U})},
            {side + "_BUFFER_MODE", number(0, 1)},
            {side + "_BUFFER_BYPASS_MODE", oneOf({"Fast_Sync"s, "Other"s})},
            {side + "_PLL_TYPE", oneOf({"LCPLL"s, "RPLL"s})},
            {side + "_IN_USE", flag()},
            {side + "_OUTCLK_SOURCE", oneOf({side + "OUTCLKPCS", side + "OUTCLKPMA",
                                             side + "PLLREFCLK", side + "PROGDIVCLK"})},
            {side + "_PIPE_POSITION", oneOf({"single"s, "bottom"s, "middle"s, "top"s})},
            {side + "_SYNCDONE_POSITION", oneOf({"single"s, "below"s, "IM"s, "above"s})},
            {side + "_CH1_RESETDONE_POSITION", oneOf({"single"s, "bottom"s, "top"s})},
            {side + "_MAINTAIN_MASTER", flag()},
            {side + "PROGDIV_FREQ_VAL", oneOf({125.0, 250.0, 500.0, 625.0, 1000.0})},
            {side + "_LCPLL_PLLCLKOUT_FREQ_VECTOR",
             oneOf({std::vector<double>(), std::vector<double>{8.0, 10.3125},
                    std::vector<double>{10.31, 12.5}})},
            {side + "_RPLL_PLLCLKOUT_FREQ_VECTOR",
             oneOf({std::vector<double>(), std::vector<double>{5.0}, std::vector<double>{7.3}})},
            {side + "_LCPLL_REFCLK_FREQUENCY", oneOf({100.0, 156.25, 312.5, 800.0})},
            {side + "_RPLL_REFCLK_FREQUENCY", oneOf({100.0, 156.25, 312.5, 800.0})},
            {side + "_LCPLL_REFCLK_ID", number(0, 7)},
            {side + "_LCPLL_REFCLK_SOURCE", oneOf({"R0"s, "R5"s})}};
    }

    rateParameters transmitterAtRandom() {
        rateParameters rate = sideAtRandom("TX");
        rate["TX_DATA_ENCODING"] =
            oneOf({"RAW"s, "8B10B"s, "128B130B"s, "64B66B_ASYNC_CAUI"s, "64B66B_ASYNC"s, "PRBS"s});
        rate["PCIE_ENABLE"] = flag();
        rate["OOB_ENABLE"] = flag();
        rate["MAX_RATE"] = number(0, 4);
        rate["XPU_MODE"] = oneOf({0.0F, 1.0F});
        return rate;
    }

    rateParameters receiverAtRandom() {
        rateParameters rate = sideAtRandom("RX");
        rate["RX_DATA_DECODING"] =
            oneOf({"RAW"s, "8B10B"s, "128B130B"s, "64B66B_ASYNC_CAUI"s, "64B66B_ASYNC"s});
        rate["RX_EQ_MODE"] = oneOf({"AUTO"s, "DFE"s, "LPM"s});
        rate["RX_SLIDE_MODE"] = oneOf({"OFF"s, "AUTO"s, "PCS"s, "PMA"s});
        rate["RX_PPM_OFFSET"] = oneOf({0U, 200U, 1000000U});
        rate["RX_SSC_PPM"] = oneOf({0U, 5000U});
        rate["RX_COMMA_ALIGN_WORD"] = oneOf({1U, 2U, 4U});
        for (const std::string name : {"RX_COMMA_MASK", "RX_COMMA_M_VAL", "RX_COMMA_P_VAL"}) {
            rate[name] = digits(10);
        }
        rate["RX_CC_REPEAT_WAIT"] = number(0, 31);
        rate["RX_CB_MAX_SKEW"] = number(1, 14);
        rate["RX_CB_MAX_LEVEL"] = number(1, 4);
        rate["RX_CC_PERIODICITY"] = number(1, 20);
        for (const std::string use : {"RX_CC", "RX_CB"}) {
            rate[use + "_NUM_SEQ"] = number(0, 2);
            rate[use + "_LEN_SEQ"] = oneOf({1U, 2U, 4U});
            rate[use + "_VAL_0_0"] = digits(8);
            rate[use + "_VAL_1_3"] = digits(8);
            rate[use + "_K_0_0"] = flag();
            rate[use + "_DISP_1_3"] = flag();
            rate[use + "_MASK_1_2"] = flag();
        }
        return rate;
    }

    /// Two rates of each channel and direction.
    userParamStore ratesAtRandom() {
        userParamStore params(2);
        for (std::size_t channel = 0; channel < channels; ++channel) {
            params[0].push_back({transmitterAtRandom(), transmitterAtRandom()});
            params[1].push_back({receiverAtRandom(), receiverAtRandom()});
        }
        return params;
    }

    /// Rate groups of the channels, each the same in both directions.
    std::vector<channelUsageInfo> groupsAtRandom() {
        std::vector<channelUsageInfo> usage(1);
        for (int channel = 0; channel < static_cast<int>(channels); ++channel) {
            usage[0].tx.push_back(channel);
            usage[0].txrate.push_back(boost::get<std::string>(oneOf({"a"s, "b"s, "c"s})));
        }
        usage[0].rx = usage[0].tx;
        usage[0].rxrate = usage[0].txrate;
        return usage;
    }

    std::mt19937 random{GetParam()};
};

TEST_P(SxbReferenceDatabaseWithRandomRates, HasRoomForEveryField) {
    run(ratesAtRandom());
    for (const auto& passes : engine->blockVarMap) {
        EXPECT_THAT(passes, SizeIs(4));
    }
    expectEveryWordHoldsItsFields();
}

TEST_P(SxbReferenceDatabaseWithRandomRates, WordsOfConstantFieldsAreTheSameInEveryConfiguration) {
    run(ratesAtRandom());
    const registerValues words = constantWords();
    EXPECT_THAT(words, SizeIs(111));
    for (const registerValues& snapshot : allRegisterValues()) {
        for (const auto& [name, word] : words) {
            EXPECT_EQ(snapshot.at(name), word) << name;
        }
    }
}

TEST_P(SxbReferenceDatabaseWithRandomRates, FieldsDoNotDependOnTheOrderInWhichTheirRulesRan) {
    const userParamStore rates = ratesAtRandom();
    run(rates);
    const std::vector<registerValues> values = allRegisterValues();
    run(rates, {registerSxbPllRules, registerSxbTxRules, registerSxbRxRules});
    EXPECT_EQ(allRegisterValues(), values);
}

TEST_P(SxbReferenceDatabaseWithRandomRates, RateTablesBringTheirOwnersToEveryRate) {
    run(ratesAtRandom(), {registerSxbRxRules, registerSxbTxRules, registerSxbPllRules},
        groupsAtRandom());
    const tool::RateSnapshots snapshots = tool::takeSnapshots(*engine);
    const tool::DecodedRateTable table =
        tool::decodeRateTable(tool::rateTableWords(engine->generateRateTableInBinary()));
    const tool::ReplayReport report =
        tool::replayRateTable(table, tool::ControllerRegisters(loaded.m_fields), snapshots);
    std::set<std::string> written;
    for (const tool::ReplayFinding& finding : report.findings) {
        if (finding.isOwn() && finding.outcome != tool::ReplayClass::overwrittenByAdjustment) {
            EXPECT_EQ(finding.outcome, tool::ReplayClass::replays) << finding.name;
            written.insert(finding.name);
        }
    }
    // Two random rates have more to change than the register that every table holds.
    EXPECT_GT(written.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SxbReferenceDatabaseWithRandomRates, testing::Range(1U, 13U));

}  // namespace
}  // namespace sable_lanecfg
