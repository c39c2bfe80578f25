#include <lanecfg/RuleEngineInit.h>
#include <lanecfg/ToolGTDRCModel.h>
#include <lanecfg/ToolSXD4DRCModel.h>
#include <lanecfg/host/ToolDRCModel.h>
#include <lanecfg/host/ToolHybridController.h>
#include <lanecfg/host/ToolParamMgr.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>

using testing::ElementsAre;

namespace {

constexpr const char* parameterName = "gt.enableBlockAutomation";
constexpr const char* sableSubcore = "corvane:ip:sable_gt_subcore_ip:99.9";
constexpr const char* subcore = "corvane:ip:gt_subcore_ip:1.0";
constexpr const char* brightspan = "corvane:ip:sxd_lane_cfg_brightspan:1.0";

const ToolParamMgr::BoolParam& registeredParameter() {
    return ToolParamMgr::getParamMgr().getBoolParams().at(parameterName);
}

std::unique_ptr<ToolDRCModel> makeModel(ToolHybridController::CreateFunction create,
                                        const std::string& ipName) {
    ToolDRCModel* model = nullptr;
    create(ipName, &model);
    return std::unique_ptr<ToolDRCModel>(model);
}

/// Tells when it is deleted.
class MortalModel : public ToolDRCModel {
  public:
    explicit MortalModel(bool& isAlive) : ToolDRCModel("mortal"), isAlive_(isAlive) {
        isAlive_ = true;
    }
    ~MortalModel() override { isAlive_ = false; }
    void init() override {}

  private:
    bool& isAlive_;
};

/// Takes the place of a function of the library in the host's registry.
void createNothing(std::string /*ipIdentifier*/, ToolDRCModel** /*model*/) {}

TEST(RuleEngineInit, DeclaresTheToolParameterThatIsOffByDefault) {
    RuleEngineInit::registerParams();
    EXPECT_EQ(registeredParameter().description, "Enables Block Automation for Sable GT IPs");
    EXPECT_FALSE(registeredParameter().defaultValue);
}

TEST(RuleEngineInit, RegistersTheIdentifiersInOrder) {
    RuleEngineInit::init();
    EXPECT_THAT(ToolHybridController::getIPIdentifiers(),
                ElementsAre(sableSubcore, subcore, brightspan));
}

TEST(RuleEngineInit, RegistersWithoutDeclaringParameters) {
    ToolParamMgr::getParamMgr().registerBoolParam(parameterName, "of the host", true);
    RuleEngineInit::init();
    EXPECT_EQ(registeredParameter().description, "of the host");
}

TEST(RuleEngineInit, DeclaresParametersWithoutRegistering) {
    ToolHybridController::setDRCModelBasedonIP(sableSubcore, createNothing);
    RuleEngineInit::registerParams();
    EXPECT_EQ(ToolHybridController::createDRCModel(sableSubcore), nullptr);
}

/// What the entry leaves with the host.
class HostRegistration : public testing::Test {
  protected:
    /// Class of the model that the host gets for the identifier, after checking its name and that
    /// the host can delete it.
    template <class Model>
    static void expectModel(const std::string& ipIdentifier) {
        ToolDRCModel* model = ToolHybridController::createDRCModel(ipIdentifier);
        ASSERT_NE(model, nullptr);
        EXPECT_EQ(model->getName(), ipIdentifier);
        const ToolDRCModel& made = *model;
        EXPECT_EQ(typeid(made), typeid(Model));
        EXPECT_TRUE(ToolHybridController::deleteDRCModel(ipIdentifier, &model));
    }

    const int result_ = Hostx_rule_engine_Init();
};

TEST_F(HostRegistration, EntryGivesZero) {
    EXPECT_EQ(result_, 0);
}

TEST_F(HostRegistration, EntryDeclaresTheToolParameter) {
    ToolParamMgr::getParamMgr().registerBoolParam(parameterName, "of the host", true);
    Hostx_rule_engine_Init();
    EXPECT_FALSE(registeredParameter().defaultValue);
}

TEST_F(HostRegistration, EntryRegistersTheIdentifiersInOrder) {
    EXPECT_THAT(ToolHybridController::getIPIdentifiers(),
                ElementsAre(sableSubcore, subcore, brightspan));
}

TEST_F(HostRegistration, EntryCalledAgainChangesNothing) {
    EXPECT_EQ(Hostx_rule_engine_Init(), 0);
    EXPECT_THAT(ToolHybridController::getIPIdentifiers(),
                ElementsAre(sableSubcore, subcore, brightspan));
    expectModel<ToolSXD4DRCModel>(brightspan);
}

TEST_F(HostRegistration, BothSubcoreIdentifiersYieldTheSameModelClass) {
    expectModel<ToolGTDRCModel>(sableSubcore);
    expectModel<ToolGTDRCModel>(subcore);
}

TEST_F(HostRegistration, BrightspanYieldsTheSXD4Model) {
    expectModel<ToolSXD4DRCModel>(brightspan);
}

TEST_F(HostRegistration, TwoModelsOfOneIdentifierAreTwoObjects) {
    const auto first = makeModel(gtRulesObjInit, subcore);
    const auto second = makeModel(gtRulesObjInit, subcore);
    EXPECT_NE(first, second);
}

TEST(ModelCallbacks, MakeTheModelClassOfTheirNameForAnyIdentifier) {
    const auto model = makeModel(gtRulesObjInit, brightspan);
    const auto sxdModel = makeModel(sxdRulesObjInit, "");
    EXPECT_NE(dynamic_cast<const ToolGTDRCModel*>(model.get()), nullptr);
    EXPECT_EQ(model->getName(), brightspan);
    EXPECT_NE(dynamic_cast<const ToolSXD4DRCModel*>(sxdModel.get()), nullptr);
    EXPECT_EQ(sxdModel->getName(), "");
}

/// Create and delete function of one model class.
struct CallbackPair {
    const char* name;
    ToolHybridController::CreateFunction create;
    ToolHybridController::DeleteFunction deleteModel;
};

class ModelCallbacksOfEachClass : public testing::TestWithParam<CallbackPair> {};

TEST_P(ModelCallbacksOfEachClass, DeletingANullModelDoesNothing) {
    ToolDRCModel* model = nullptr;
    GetParam().deleteModel(subcore, &model);
    EXPECT_EQ(model, nullptr);
}

TEST_P(ModelCallbacksOfEachClass, DeletingRunsTheVirtualDestructor) {
    bool isAlive = false;
    ToolDRCModel* model = new MortalModel(isAlive);
    ASSERT_TRUE(isAlive);
    GetParam().deleteModel(subcore, &model);
    EXPECT_FALSE(isAlive);
}

TEST_P(ModelCallbacksOfEachClass, DeletingLeavesThePointerAsItIs) {
    ToolDRCModel* model = nullptr;
    GetParam().create(subcore, &model);
    ToolDRCModel* const created = model;
    GetParam().deleteModel(subcore, &model);
    EXPECT_EQ(model, created);
}

TEST_P(ModelCallbacksOfEachClass, MakingDoesNotDeleteWhatWasThereBefore) {
    bool isAlive = false;
    MortalModel earlier(isAlive);
    ToolDRCModel* model = &earlier;
    GetParam().create(subcore, &model);
    const std::unique_ptr<ToolDRCModel> created(model);
    EXPECT_NE(created.get(), &earlier);
    EXPECT_TRUE(isAlive);
}

TEST_P(ModelCallbacksOfEachClass, WithoutAPlaceForTheModelNothingHappens) {
    EXPECT_NO_THROW(GetParam().create(subcore, nullptr));
    EXPECT_NO_THROW(GetParam().deleteModel(subcore, nullptr));
}

INSTANTIATE_TEST_SUITE_P(Each, ModelCallbacksOfEachClass,
                         testing::Values(CallbackPair{"subcore", gtRulesObjInit, gtRulesObjDelete},
                                         CallbackPair{"sxd4", sxdRulesObjInit, sxdRulesObjDelete}),
                         [](const testing::TestParamInfo<CallbackPair>& test) {
                             return std::string(test.param.name);
                         });

}  // namespace
