#include "support/environment_variable.h"
#include "support/print_rule_value.h"
#include "support/temporary_directory.h"

#include <lanecfg/lane_cfg_instance.h>
#include <lanecfg/rule_engine_utilities.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using sable_lanecfg::attributeInfo;
using sable_lanecfg::channelUsageInfo;
using sable_lanecfg::lane_cfg_instance;
using sable_lanecfg::lane_cfg_instance_iter_stable;
using sable_lanecfg::paramTypeInfo;
using sable_lanecfg::quadsUsageInfo;
using sable_lanecfg::rule_engine_utilities;
using sable_lanecfg::ruleValue;
using sable_lanecfg::userParamStore;
using sable_lanecfg::varInfo;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::StartsWith;

namespace {

/// Both frames have to behave alike in all that these tests ask.
template <class Frame>
class FamilyFrame : public testing::Test {
  protected:
    FamilyFrame() {
        usage.resize(1);
        usage[0].group = "lanes";
    }

    std::unique_ptr<Frame> make() const {
        return std::make_unique<Frame>("x", "SXD4", usage, quads, types, params, registers,
                                       deviceData);
    }

    /// A quad without rates; those of a rate table need more parameters than these tests.
    std::unique_ptr<Frame> makeUnused() {
        params.clear();
        return make();
    }

    std::vector<channelUsageInfo> usage;
    std::map<std::string, quadsUsageInfo*> quads;
    std::map<std::string, paramTypeInfo> types{
        {"RX_LINE_RATE", {"double", "Gb/s", "10.3125"}},
        {"TX_LINE_RATE", {"double", "Gb/s", "10.3125"}},
    };
    userParamStore params{{{{{"TX_LINE_RATE", ruleValue(12.5)}}}}};
    std::map<std::string, attributeInfo> registers{{"TX_CFG", {"channel", {}, "0x4"}}};
    std::map<std::string, std::vector<std::string>> deviceData{{"siliconRev", {"es1"}}};
};

template <class Frame>
constexpr bool isLive = std::is_base_of<lane_cfg_instance, Frame>::value;

using Frames = testing::Types<lane_cfg_instance, lane_cfg_instance_iter_stable>;

struct FrameNames {
    template <class Frame>
    static std::string GetName(int /*index*/) {
        return isLive<Frame> ? "live" : "stable";
    }
};

TYPED_TEST_SUITE(FamilyFrame, Frames, FrameNames);

TYPED_TEST(FamilyFrame, KeepsItsNameAndTheFamilyWordTwice) {
    const auto frame = this->make();
    EXPECT_EQ(frame->instanceName, "x");
    EXPECT_EQ(frame->familyName, "SXD4");
    EXPECT_EQ(frame->family, "SXD4");
}

TYPED_TEST(FamilyFrame, GivesEachContainerToTheEngine) {
    const auto frame = this->make();
    ASSERT_EQ(frame->channelUsage.size(), 1U);
    EXPECT_EQ(frame->channelUsage[0].group, "lanes");
    ASSERT_EQ(frame->paramTypes.size(), 2U);
    EXPECT_EQ(frame->paramTypes.at("TX_LINE_RATE").description, "Gb/s");
    EXPECT_EQ(frame->userParams, this->params);
    ASSERT_EQ(frame->attributes.size(), 1U);
    EXPECT_EQ(frame->attributes.at("TX_CFG").Offset, "0x4");
    EXPECT_THAT(frame->settings, ElementsAre(Pair("siliconRev", ElementsAre("es1"))));
}

TYPED_TEST(FamilyFrame, ReadsNoQuad) {
    this->quads["QUAD_0"] = nullptr;
    EXPECT_EQ(this->make()->instanceName, "x");
}

TYPED_TEST(FamilyFrame, StartsWithTheParametersAsBlankVariablesAndNoPass) {
    const auto frame = this->make();
    ASSERT_EQ(frame->varMap.size(), 2U);
    for (const auto& entry : frame->varMap) {
        EXPECT_EQ(entry.second.value.which(), 0) << entry.first;
        EXPECT_FALSE(entry.second.ruleNumber) << entry.first;
    }
    EXPECT_THAT(frame->blockVarMap, IsEmpty());
}

TYPED_TEST(FamilyFrame, AnswersNoAttributeAndNoOutputClock) {
    const auto frame = this->make();
    EXPECT_THAT(frame->getAttributes(), IsEmpty());
    EXPECT_THAT(frame->getOutClkFrequencies(), IsEmpty());
}

/// Sections of a memory image before the rate table.
std::map<std::string, std::string> firmwareOf(std::map<std::string, std::string> image) {
    image.erase("@00016000");
    return image;
}

TYPED_TEST(FamilyFrame, AnswersTheFirmwareAndBehindItTheRateTable) {
    const auto frame = this->makeUnused();
    frame->runBlockRules();
    const std::map<std::string, std::string> image = frame->getMemContent();
    // The frozen firmware has a section less.
    EXPECT_EQ(image.size(), isLive<TypeParam> ? 7U : 6U);
    EXPECT_EQ(image.rbegin()->first, "@00016000");
    EXPECT_EQ(image.at("@00016000"), frame->generateRateTable(true));
    EXPECT_THAT(image.at("@00016000"), StartsWith("//Version 2.0 32-bit\n  "));
}

TYPED_TEST(FamilyFrame, AnswersTheSameMemoryImageAfterATable) {
    const auto frame = this->makeUnused();
    frame->runBlockRules();
    frame->generateRateTable(true);
    const std::map<std::string, std::string> image = frame->getMemContent();
    EXPECT_EQ(frame->getMemContent(), image);
}

TYPED_TEST(FamilyFrame, ClearsTheLogForTheTableOfTheMemoryImage) {
    const auto frame = this->makeUnused();
    rule_engine_utilities::write_log("of an earlier request");
    frame->getMemContent();
    EXPECT_THAT(rule_engine_utilities::get_log_content(), Not(Contains("of an earlier request")));
    EXPECT_THAT(rule_engine_utilities::get_log_content(), Contains("*****New Version*****"));
}

TYPED_TEST(FamilyFrame, ChoosesTheFirmwareByTheSiliconRevisionIfItIsLive) {
    const auto firmwareFor = [this](const std::string& revision) {
        this->deviceData["siliconRev"] = {revision};
        return firmwareOf(this->makeUnused()->getMemContent());
    };
    const std::map<std::string, std::string> early = firmwareFor("es1");
    EXPECT_EQ(firmwareFor("ES1"), early);
    const std::map<std::string, std::string> other = firmwareFor("");
    EXPECT_EQ(firmwareFor("ES2"), other);
    EXPECT_EQ(early != other, isLive<TypeParam>);
}

TYPED_TEST(FamilyFrame, AnswersAFirmwareWithoutASiliconRevision) {
    this->deviceData["siliconRev"] = {"ES2"};
    const std::map<std::string, std::string> other =
        firmwareOf(this->makeUnused()->getMemContent());
    this->deviceData.clear();
    EXPECT_EQ(firmwareOf(this->makeUnused()->getMemContent()), other);
}

/// Gives a frame a register that its rate table needs and whose offset is no number, of which the
/// standard library says "stoul".
template <class Frame>
void breakRateTable(Frame& frame) {
    frame.attributes["TX_CFG"].Offset = "nowhere";
    std::vector<std::map<std::string, varInfo>> rates(2);
    for (unsigned int rate = 0; rate < 2; ++rate) {
        for (const char* const name : {"TX", "RX", "TX_CFG"}) {
            rates[rate][name].value = rate;
        }
    }
    frame.blockVarMap.assign(1, rates);
}

TYPED_TEST(FamilyFrame, LetsAFaultOfTheTableOutOfTheMemoryImageAsItIs) {
    const auto frame = this->makeUnused();
    breakRateTable(*frame);
    EXPECT_THAT([&] { frame->getMemContent(); },
                testing::ThrowsMessage<std::invalid_argument>(testing::StrEq("stoul")));
}

TYPED_TEST(FamilyFrame, TurnsAFaultOfTheTableIntoATextInAnElfUpdate) {
    const lanecfg_test::TemporaryDirectory directory;
    const auto frame = this->makeUnused();
    breakRateTable(*frame);
    EXPECT_THAT([&] { frame->updateELF("firmware.elf", directory.path().string()); },
                testing::Throws<std::string>(
                    testing::StrEq("Internal Error: Quad IP Generation Error : stoul")));
}

TYPED_TEST(FamilyFrame, UpdatesAnElfThroughTheScriptOfTheWorkDirectory) {
    const lanecfg_test::TemporaryDirectory directory;
    std::filesystem::permissions(directory.write("pco-objcopy", ""),
                                 std::filesystem::perms::owner_all);
    const lanecfg_test::EnvironmentVariable searchPath("PATH", directory.path().string());
    directory.write("update_elf.sh", "#!/bin/sh\necho \"$5 puts $4 into $2\"\n");
    const auto frame = this->makeUnused();
    EXPECT_TRUE(frame->updateELF("firmware.elf", directory.path().string()));
    EXPECT_EQ(lanecfg_test::readFile(directory.file("elfUpdator.log")),
              "x puts " + directory.file("rate_table.txt") + " into firmware.elf\n");
    EXPECT_EQ(lanecfg_test::readFile(directory.file("rate_table.txt")),
              frame->generateRateTableInBinary());
}

TYPED_TEST(FamilyFrame, LeavesAnElfAloneWithoutAScript) {
    const lanecfg_test::TemporaryDirectory directory;
    const std::string firmware = directory.write("firmware.elf", "code");
    EXPECT_FALSE(this->makeUnused()->updateELF(firmware, directory.path().string()));
    EXPECT_EQ(lanecfg_test::readFile(firmware), "code");
}

/// Family whose one rule holds the token, and whose constructor may fail after registering it.
template <class Frame>
class TokenFamily : public Frame {
  public:
    TokenFamily(const std::shared_ptr<int>& token, bool fails)
        : Frame("x", "SXB", {}, {}, {}, {}, {}, {}) {
        this->rule({}, {"TX_CFG"}, [token] { ++*token; });
        if (fails) {
            throw std::runtime_error("rule at fault");
        }
    }
};

TYPED_TEST(FamilyFrame, DeletesTheFamilyThroughThePointerToTheFrame) {
    const auto token = std::make_shared<int>();
    const TypeParam* const frame = new TokenFamily<TypeParam>(token, false);
    ASSERT_EQ(token.use_count(), 2);
    delete frame;
    EXPECT_EQ(token.use_count(), 1);
}

TYPED_TEST(FamilyFrame, IsDestroyedWhenTheFamilysConstructorThrows) {
    const auto token = std::make_shared<int>();
    EXPECT_THROW(TokenFamily<TypeParam>(token, true), std::runtime_error);
    EXPECT_EQ(token.use_count(), 1);
}

/// Slot of a virtual operation. A pointer to a virtual member begins with the byte offset of the
/// slot in the virtual table, on some processors plus one.
template <class Operation>
std::size_t slotOf(Operation operation) {
    std::size_t offset = 0;
    static_assert(sizeof(operation) >= sizeof(offset));
    std::memcpy(&offset, &operation, sizeof(offset));
    return offset / sizeof(void*);
}

TYPED_TEST(FamilyFrame, HasItsVirtualOperationsInTheHostsOrder) {
    EXPECT_EQ(slotOf(&TypeParam::runBlockRules), 0U);
    EXPECT_EQ(slotOf(&TypeParam::getAttribMap), 1U);
    // The two forms of the destructor, of which no pointer can be taken, fill slots 2 and 3.
    EXPECT_EQ(slotOf(&TypeParam::getAttributes), 4U);
    EXPECT_EQ(slotOf(&TypeParam::getMemContent), 5U);
    EXPECT_EQ(slotOf(&TypeParam::getOutClkFrequencies), 6U);
    EXPECT_EQ(slotOf(&TypeParam::updateELF), 7U);
}

TEST(LiveFrame, HasTheFabricMemoryQuestionInTheLastSlot) {
    EXPECT_EQ(slotOf(&lane_cfg_instance::isFabricBramNeeded), 8U);
}

/// Gives a channel of the frame rates in which each of the registers counts up.
void addRates(lane_cfg_instance& frame, std::size_t channel, unsigned int rates,
              const std::vector<std::string>& counting) {
    frame.blockVarMap.resize(std::max(frame.blockVarMap.size(), channel + 1));
    for (unsigned int rate = 0; rate < rates; ++rate) {
        sable_lanecfg::variableMap snapshot;
        snapshot["TX"].value = rate;
        snapshot["RX"].value = rate;
        for (const std::string& name : counting) {
            snapshot[name].value = rate;
        }
        frame.blockVarMap[channel].push_back(std::move(snapshot));
    }
}

/// Channel 0 has two words a rate, a lone register; channel 1 has three, a pair.
struct FabricMemory {
    const char* name;
    unsigned int twoWordRates;
    unsigned int threeWordRates;
    int bytes;
    bool needed;
};

class LiveFrameFabricMemory : public testing::TestWithParam<FabricMemory> {};

TEST_P(LiveFrameFabricMemory, IsNeededAboveTheControllersOwn) {
    std::vector<channelUsageInfo> usage(1);
    usage[0].tx = usage[0].rx = {0, 1};
    usage[0].txrate = usage[0].rxrate = {"two words", "three words"};
    lane_cfg_instance frame("x", "SXB", usage, {}, {}, {},
                            {{"A", {"channel", {}, "0x0"}}, {"B", {"channel", {}, "0x1"}}}, {});
    addRates(frame, 0, GetParam().twoWordRates, {"A"});
    addRates(frame, 1, GetParam().threeWordRates, {"A", "B"});
    EXPECT_EQ(frame.getRateTableSize(), GetParam().bytes);
    EXPECT_EQ(frame.isFabricBramNeeded(), GetParam().needed);
}

// The table's header has ten words; 2048 words are 8192 bytes.
INSTANTIATE_TEST_SUITE_P(Sizes, LiveFrameFabricMemory,
                         testing::Values(FabricMemory{"WithoutRates", 0, 0, 40, false},
                                         FabricMemory{"AWordLess", 1014, 3, 8188, false},
                                         FabricMemory{"ExactlyFull", 1016, 2, 8192, false},
                                         FabricMemory{"AWordMore", 1015, 3, 8196, true}),
                         [](const auto& tested) { return std::string(tested.param.name); });

template <class Frame, class = void>
struct AsksForFabricMemory : std::false_type {};

template <class Frame>
struct AsksForFabricMemory<Frame,
                           std::void_t<decltype(std::declval<Frame&>().isFabricBramNeeded())>>
    : std::true_type {};

TEST(FrozenFrame, HasNoFabricMemoryQuestion) {
    EXPECT_TRUE(AsksForFabricMemory<lane_cfg_instance>::value);
    EXPECT_FALSE(AsksForFabricMemory<lane_cfg_instance_iter_stable>::value);
}

}  // namespace
