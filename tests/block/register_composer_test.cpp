#include "block/register_composer.h"

#include "block_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace {

using lanecfg_test::BlockEngine;
using lanecfg_test::BlockSetup;
using sable_lanecfg::register_composer;
using sable_lanecfg::ruleValue;
using ::testing::IsEmpty;

using wordOfRegister = std::function<unsigned int(BlockEngine&, const std::string&)>;

struct Composition {
    const char* name;
    wordOfRegister word;
};

/// What holds for a register's word however it is composed.
class RegisterWord : public ::testing::TestWithParam<Composition> {
  protected:
    static unsigned int wordOf(BlockEngine& engine, const std::string& name) {
        return GetParam().word(engine, name);
    }
};

INSTANTIATE_TEST_SUITE_P(
    Composed, RegisterWord,
    ::testing::Values(Composition{"ByName",
                                  [](BlockEngine& engine, const std::string& name) {
                                      return engine.generateRegister(name);
                                  }},
                      Composition{"Held",
                                  [](BlockEngine& engine, const std::string& name) {
                                      return register_composer(engine, name).word();
                                  }}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST_P(RegisterWord, PlacesEveryField) {
    BlockEngine engine(BlockSetup().reg(
        "REG", "CH", {{"REG.LOW", {0, 4}}, {"REG.MIDDLE", {4, 12}}, {"REG.TOP", {31, 1}}}));
    engine.setVal("REG.LOW", 0x5U);
    engine.setVal("REG.MIDDLE", 0xABCU);
    engine.setVal("REG.TOP", 1U);
    EXPECT_EQ(wordOf(engine, "REG"), 0x8000ABC5U);
}

TEST_P(RegisterWord, OfARegisterWithoutFieldsIs0) {
    BlockEngine engine(BlockSetup().reg("REG", "CH"));
    EXPECT_EQ(wordOf(engine, "REG"), 0U);
}

TEST_P(RegisterWord, OfAnUnknownRegisterIs0AndEntersAnEmptyRecord) {
    BlockEngine engine{BlockSetup()};
    EXPECT_EQ(wordOf(engine, "REG"), 0U);
    ASSERT_EQ(engine.attributes.count("REG"), 1U);
    EXPECT_THAT(engine.attributes.at("REG").fields, IsEmpty());
    EXPECT_EQ(engine.attributes.at("REG").dstSubBlock, "");
}

TEST_P(RegisterWord, KeepsAllBitsOfAFieldOfWidth32) {
    BlockEngine engine(BlockSetup().reg("REG", "CH", {{"REG.ALL", {0, 32}}}));
    engine.setVal("REG.ALL", 0xFEDCBA98U);
    EXPECT_EQ(wordOf(engine, "REG"), 0xFEDCBA98U);
}

TEST_P(RegisterWord, OfOverlappingFieldsHasTheLaterNameOnTop) {
    BlockEngine engine(
        BlockSetup().reg("REG", "CH", {{"REG.B", {4, 8}}, {"REG.A", {0, 8}}, {"REG.C", {10, 4}}}));
    engine.setVal("REG.A", 0xFFU);
    engine.setVal("REG.B", 0x00U);
    engine.setVal("REG.C", 0xFU);
    // A gives 0x00FF, B clears bits 4 to 11, C sets bits 10 to 13.
    EXPECT_EQ(wordOf(engine, "REG"), 0x3C0FU);
}

TEST_P(RegisterWord, RefusesAFieldThatIsNotUnsigned) {
    BlockEngine engine(BlockSetup().reg("REG", "CH", {{"REG.F", {0, 8}}}));
    for (const ruleValue& value :
         {ruleValue(), ruleValue(std::string("1")), ruleValue(true), ruleValue(1.0F),
          ruleValue(1.0), ruleValue(std::vector<double>{1.0})}) {
        engine.setVal("REG.F", value);
        EXPECT_THROW(wordOf(engine, "REG"), boost::bad_get) << value.which();
    }
}

TEST_P(RegisterWord, RefusesAFieldThatContributesNothingToo) {
    BlockEngine engine(BlockSetup().reg("REG", "CH", {{"REG.F", {32, 0}}}));
    engine.setVal("REG.F", true);
    EXPECT_THROW(wordOf(engine, "REG"), boost::bad_get);
}

TEST_P(RegisterWord, MakesTheFirstAbsentFieldABlankVariableAndRefusesIt) {
    BlockEngine engine(
        BlockSetup().reg("REG", "CH", {{"REG.A", {0, 8}}, {"REG.B", {8, 8}}, {"REG.C", {16, 8}}}));
    engine.setVal("REG.A", 1U);
    EXPECT_THROW(wordOf(engine, "REG"), boost::bad_get);
    ASSERT_EQ(engine.varMap.count("REG.B"), 1U);
    EXPECT_EQ(engine.varMap.at("REG.B").value.which(), 0);
    EXPECT_EQ(engine.varMap.count("REG.C"), 0U);
}

/// Fields of random places, some beyond the word, that may overlap.
std::map<std::string, std::vector<int>> randomLayout(std::mt19937& random) {
    std::uniform_int_distribution<int> offset(-2, 34);
    std::uniform_int_distribution<int> width(-2, 40);
    std::uniform_int_distribution<int> numbers(0, 9);
    std::map<std::string, std::vector<int>> fields;
    for (int field = 0; field < 8; ++field) {
        std::vector<int> place{offset(random), width(random)};
        const int kept = numbers(random);
        if (kept < 2) {
            place.resize(static_cast<std::size_t>(kept));
        }
        fields["REG.F" + std::to_string(field)] = place;
    }
    return fields;
}

/// The word bit by bit: each bit is that of the last field, in key order, which covers it.
unsigned int wordBitByBit(const std::map<std::string, std::vector<int>>& fields,
                          const std::map<std::string, unsigned int>& values) {
    unsigned int word = 0;
    for (int bit = 0; bit < 32; ++bit) {
        for (const auto& [name, place] : fields) {
            if (place.size() < 2 || place[0] < 0 || bit < place[0] || bit >= place[0] + place[1]) {
                continue;
            }
            const unsigned int fieldBit = (values.at(name) >> (bit - place[0])) & 1U;
            word = (word & ~(1U << bit)) | (fieldBit << bit);
        }
    }
    return word;
}

TEST(RegisterWordProperty, EachBitIsThatOfTheLastFieldThatCoversItBothWays) {
    std::mt19937 random(4711);
    for (int round = 0; round < 500; ++round) {
        const auto fields = randomLayout(random);
        BlockEngine engine(BlockSetup().reg("REG", "CH", fields));
        register_composer composer(engine, "REG");
        for (int pass = 0; pass < 3; ++pass) {
            std::map<std::string, unsigned int> values;
            for (const auto& field : fields) {
                values[field.first] = static_cast<unsigned int>(random());
                engine.setVal(field.first, values[field.first]);
            }
            const unsigned int expected = wordBitByBit(fields, values);
            ASSERT_EQ(engine.generateRegister("REG"), expected);
            ASSERT_EQ(composer.word(), expected);
        }
    }
}

TEST(RegisterWordProperty, FieldsThatDoNotOverlapCanBeExtractedAgain) {
    std::mt19937 random(815);
    for (int round = 0; round < 500; ++round) {
        std::map<std::string, std::vector<int>> fields;
        int offset = 0;
        while (offset < 32) {
            const int width = std::uniform_int_distribution<int>(1, 32 - offset)(random);
            fields["REG.F" + std::to_string(offset)] = {offset, width};
            offset += width;
        }
        BlockEngine engine(BlockSetup().reg("REG", "CH", fields));
        for (const auto& field : fields) {
            engine.setVal(field.first, static_cast<unsigned int>(random()));
        }
        const unsigned long long word = engine.generateRegister("REG");
        for (const auto& [name, place] : fields) {
            const unsigned long long mask = (1ULL << place[1]) - 1;
            ASSERT_EQ((word >> place[0]) & mask, engine.getVal<unsigned int>(name) & mask) << name;
        }
    }
}

TEST(RegisterComposer, SeesEachPassItsOwnValues) {
    BlockEngine engine(BlockSetup().reg("REG", "CH", {{"REG.F", {4, 8}}}));
    register_composer composer(engine, "REG");
    engine.setVal("REG.F", 1U);
    EXPECT_EQ(composer.word(), 0x10U);
    engine.setVal("REG.F", 2U);
    EXPECT_EQ(composer.word(), 0x20U);
}

TEST(RegisterComposer, MayBeMadeBeforeRegisterAndFieldsExist) {
    BlockEngine engine{BlockSetup()};
    register_composer composer(engine, "REG");
    engine.attributes["REG"].fields["REG.F"] = {0, 8};
    engine.setVal("REG.F", 7U);
    EXPECT_EQ(composer.word(), 7U);
}

TEST(RegisterComposer, LeavesEngineAloneUntilFirstUse) {
    BlockEngine engine(BlockSetup().reg("REG", "CH", {{"REG.F", {0, 8}}}));
    const register_composer known(engine, "REG");
    const register_composer unknown(engine, "OTHER");
    EXPECT_EQ(engine.varMap.count("REG.F"), 0U);
    EXPECT_EQ(engine.attributes.count("OTHER"), 0U);
}

TEST(RegisterComposer, ComposesOnceItsFieldIsSetAfterAFailure) {
    BlockEngine engine(BlockSetup().reg("REG", "CH", {{"REG.F", {0, 8}}, {"REG.G", {8, 8}}}));
    register_composer composer(engine, "REG");
    EXPECT_THROW(composer.word(), boost::bad_get);
    engine.setVal("REG.F", 0x12U);
    EXPECT_THROW(composer.word(), boost::bad_get);
    engine.setVal("REG.G", 0x34U);
    EXPECT_EQ(composer.word(), 0x3412U);
    engine.setVal("REG.F", true);
    EXPECT_THROW(composer.word(), boost::bad_get);
}

TEST(RegisterComposer, TakesTheFieldsThatItIsGivenAndFindsTheOthers) {
    BlockEngine engine(
        BlockSetup().reg("REG", "CH", {{"REG.A", {0, 8}}, {"REG.B", {8, 8}}, {"REG.C", {16, 8}}}));
    engine.setVal("REG.A", 0x12U);
    engine.setVal("REG.B", 0x34U);
    engine.setVal("REG.C", 0x56U);
    engine.setVal("REG.D", 0x78U);
    register_composer composer(
        engine, "REG",
        {&engine.mention("REG.D"), &engine.mention("REG.C"), &engine.mention("REG.A")});
    EXPECT_EQ(composer.word(), 0x563412U);
}

TEST(RegisterComposer, RefusesAFieldThatWasOnlyMentioned) {
    BlockEngine engine(BlockSetup().reg("REG", "CH", {{"REG.F", {0, 8}}}));
    register_composer composer(engine, "REG", {&engine.mention("REG.F")});
    EXPECT_THROW(composer.word(), boost::bad_get);
    ASSERT_EQ(engine.varMap.count("REG.F"), 1U);
    engine.setVal("REG.F", 0x12U);
    EXPECT_EQ(composer.word(), 0x12U);
}

TEST(RegisterComposer, WorksInsideARuleThroughAllPasses) {
    BlockSetup setup;
    setup.reg("REG", "CH", {{"REG.F", {4, 4}}}).parameter("TX_F", "int", "0");
    setup.rates(0, 0, {{{"TX_F", 1U}}, {{"TX_F", 2U}}});
    BlockEngine engine(setup);
    engine.rule({"TX_F"}, {"REG.F"},
                [&engine] { engine.setVal("REG.F", engine.getVal<unsigned int>("TX_F")); });
    engine.rule({"REG.F"}, {"REG"},
                [&engine, composer = register_composer(engine, "REG")]() mutable {
                    engine.setVal("REG", composer.word());
                });
    engine.runBlockRules();
    EXPECT_EQ(engine.inPasses<unsigned int>(0, "REG"), (std::vector<unsigned int>{0x10U, 0x20U}));
    EXPECT_EQ(engine.inPasses<unsigned int>(3, "REG"), (std::vector<unsigned int>{0U}));
}

}  // namespace
