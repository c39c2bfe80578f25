#include <lanecfg/host/ToolDRCModel.h>
#include <lanecfg/host/ToolHybridController.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace {

int livingModels = 0;

/// Counts itself, so that a test sees when it is deleted.
class CountedModel : public ToolDRCModel {
  public:
    explicit CountedModel(const std::string& name) : ToolDRCModel(name) { ++livingModels; }
    ~CountedModel() override { --livingModels; }
    void init() override {}
};

// The interface hands the identifier over by value.
void createCounted(std::string ipIdentifier, ToolDRCModel** model) {
    *model = new CountedModel(ipIdentifier);
}

void createNothing(std::string /*ipIdentifier*/, ToolDRCModel** /*model*/) {}

void deleteCounted(std::string /*ipIdentifier*/, ToolDRCModel** model) {
    delete *model;
}

/// The registered identifiers of these tests; the registry lasts as long as the process.
std::vector<std::string> identifiersWithPrefix(const std::string& prefix) {
    std::vector<std::string> identifiers = ToolHybridController::getIPIdentifiers();
    identifiers.erase(std::remove_if(identifiers.begin(), identifiers.end(),
                                     [&prefix](const std::string& identifier) {
                                         return identifier.rfind(prefix, 0) != 0;
                                     }),
                      identifiers.end());
    return identifiers;
}

TEST(ToolHybridController, CreatesAndDeletesAModelByIdentifier) {
    const std::string identifier = "test:create:1.0";
    ToolHybridController::setDRCModelBasedonIP(identifier, createCounted);
    ToolHybridController::setDeleteFuncOnDRCModelObject(identifier, deleteCounted);

    ToolDRCModel* model = ToolHybridController::createDRCModel(identifier);
    ASSERT_NE(model, nullptr);
    EXPECT_EQ(model->getName(), identifier);
    EXPECT_EQ(livingModels, 1);

    EXPECT_TRUE(ToolHybridController::deleteDRCModel(identifier, &model));
    EXPECT_EQ(model, nullptr);
    EXPECT_EQ(livingModels, 0);
}

TEST(ToolHybridController, ListsIdentifiersInRegistrationOrder) {
    for (const char* identifier : {"test:order:c", "test:order:a", "test:order:b"}) {
        ToolHybridController::setDRCModelBasedonIP(identifier, createCounted);
        ToolHybridController::setDeleteFuncOnDRCModelObject(identifier, deleteCounted);
    }
    // A second registration keeps the place.
    ToolHybridController::setDRCModelBasedonIP("test:order:c", createNothing);

    EXPECT_THAT(identifiersWithPrefix("test:order:"),
                ElementsAre("test:order:c", "test:order:a", "test:order:b"));
}

TEST(ToolHybridController, TakesTheLastCreateFunction) {
    ToolHybridController::setDRCModelBasedonIP("test:last:1.0", createCounted);
    ToolHybridController::setDRCModelBasedonIP("test:last:1.0", createNothing);
    EXPECT_EQ(ToolHybridController::createDRCModel("test:last:1.0"), nullptr);
    EXPECT_EQ(livingModels, 0);
}

TEST(ToolHybridController, CreatesNothingForAnUnknownIdentifier) {
    EXPECT_EQ(ToolHybridController::createDRCModel("test:unknown:1.0"), nullptr);
    EXPECT_TRUE(identifiersWithPrefix("test:unknown:").empty());
}

TEST(ToolHybridController, CreatesNothingWithoutACreateFunction) {
    ToolHybridController::setDeleteFuncOnDRCModelObject("test:onlydelete:1.0", deleteCounted);
    EXPECT_EQ(ToolHybridController::createDRCModel("test:onlydelete:1.0"), nullptr);
}

TEST(ToolHybridController, DeletesNothingWithoutADeleteFunction) {
    ToolHybridController::setDRCModelBasedonIP("test:onlycreate:1.0", createCounted);
    ToolDRCModel* const created = ToolHybridController::createDRCModel("test:onlycreate:1.0");
    ToolDRCModel* model = created;

    EXPECT_FALSE(ToolHybridController::deleteDRCModel("test:onlycreate:1.0", &model));
    EXPECT_FALSE(ToolHybridController::deleteDRCModel("test:unknown:1.0", &model));
    EXPECT_EQ(model, created);
    EXPECT_EQ(livingModels, 1);

    delete created;
}

}  // namespace
