#include <lanecfg/host/ToolParamMgr.h>

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ToolParamMgr, ReadsBackARegisteredParameter) {
    const std::string name = "test.readBack";
    ASSERT_EQ(ToolParamMgr::getParamMgr().getBoolParams().count(name), 0U);

    ToolParamMgr::getParamMgr().registerBoolParam(name, "Reads back", true);

    const ToolParamMgr::BoolParam& parameter = ToolParamMgr::getParamMgr().getBoolParams().at(name);
    EXPECT_EQ(parameter.description, "Reads back");
    EXPECT_TRUE(parameter.defaultValue);
}

TEST(ToolParamMgr, IsOneForTheProcess) {
    EXPECT_EQ(&ToolParamMgr::getParamMgr(), &ToolParamMgr::getParamMgr());
}

TEST(ToolParamMgr, ReplacesAParameterThatIsRegisteredAgain) {
    ToolParamMgr& manager = ToolParamMgr::getParamMgr();
    manager.registerBoolParam("test.twice", "first", true);
    manager.registerBoolParam("test.twice", "second", false);

    EXPECT_EQ(manager.getBoolParams().at("test.twice").description, "second");
    EXPECT_FALSE(manager.getBoolParams().at("test.twice").defaultValue);
}

}  // namespace
