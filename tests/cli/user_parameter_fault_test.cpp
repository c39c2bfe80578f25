#include "user_parameter_fault.h"

#include "cli/command_line.h"

#include <gmock/gmock.h>

namespace lanecfg_test {
namespace {

using namespace sable_lanecfg::tool;

class UserParameterFault : public testing::Test {
  protected:
    UserParameterFault() {
        nlohmann::json types;
        for (const char* const type : {"string", "int", "bool", "float", "double", "colour"}) {
            types[std::string("A_") + type] = {{"type", type}};
        }
        typesFile_ = directory_.write("parameters.json", types.dump());
    }

    /// What is found in user parameters of this text.
    std::string faultOf(const std::string& userParams, bool isDictionaryForm = false) const {
        Request request;
        request.file = directory_.write("request.json", "{\"userParams\": " + userParams + "}");
        request.isDictionaryForm = isDictionaryForm;
        return userParameterFault(request, typesFile_);
    }

    std::string faultOfValue(const std::string& name, const std::string& value) const {
        return faultOf("[[[{\"" + name + "\": " + value + "}]]]");
    }

    TemporaryDirectory directory_;
    std::string typesFile_;
};

TEST_F(UserParameterFault, IsNoneWhereEveryValueConverts) {
    EXPECT_EQ(faultOf(R"([[[{"A_string": "x", "A_int": 7, "A_bool": true, "A_float": 0.5,
        "A_double": "10.3125"}], []], [[{"A_int": "4294967295", "A_bool": 0}]]])"),
              "");
}

TEST_F(UserParameterFault, NamesDirectionLaneAndRateOfTheFirst) {
    EXPECT_EQ(faultOf(R"([[[]], [[], [{}, {"A_int": 1}, {"A_int": "x"}, {"A_int": null}]]])"),
              "in direction 1 (receive), lane 1, rate 2 the parameter \"A_int\" must be a whole "
              "number from 0 to 4294967295, and is \"x\".");
}

TEST_F(UserParameterFault, IsAValueOfNothing) {
    EXPECT_EQ(faultOfValue("A_double", "null"),
              "in direction 0 (transmit), lane 0, rate 0 the parameter \"A_double\" must be a "
              "number, and is null.");
}

TEST_F(UserParameterFault, IsAListOrAnObjectInPlaceOfANumber) {
    EXPECT_THAT(faultOfValue("A_float", "[1.5]"),
                testing::EndsWith("\"A_float\" must be a number, and is a list."));
    EXPECT_THAT(faultOfValue("A_double", "{\"a\": 1}"),
                testing::EndsWith("\"A_double\" must be a number, and is an object."));
}

TEST_F(UserParameterFault, IsAFractionInPlaceOfAWholeNumber) {
    EXPECT_THAT(faultOfValue("A_int", "1.5"), testing::EndsWith("and is 1.5."));
}

TEST_F(UserParameterFault, IsAWordInPlaceOfAFlag) {
    EXPECT_THAT(faultOfValue("A_bool", "\"yes\""),
                testing::EndsWith("\"A_bool\" must be 0, 1, true or false, and is \"yes\"."));
}

TEST_F(UserParameterFault, DoesNotQuoteALongText) {
    EXPECT_THAT(faultOfValue("A_int", "\"" + std::string(1000, 'x') + "\""),
                testing::EndsWith("and is a long text."));
}

TEST_F(UserParameterFault, IsANameThatTheTypesFileLacks) {
    EXPECT_EQ(faultOfValue("NO_SUCH", "1"),
              "in direction 0 (transmit), lane 0, rate 0 the parameter \"NO_SUCH\" is not declared "
              "with a known type in " +
                  typesFile_ + ".");
}

TEST_F(UserParameterFault, IsANameOfUnknownType) {
    EXPECT_THAT(faultOfValue("A_colour", "1"), testing::HasSubstr("\"A_colour\" is not declared"));
}

TEST_F(UserParameterFault, IsNoValueOfTheDictionaryForm) {
    EXPECT_EQ(faultOf(R"({"TX_SETTINGS": {"CH0": {"LR0_SETTINGS": {"A_int": "x"}}}})", true), "");
}

TEST_F(UserParameterFault, IsAnUnknownNameOfTheDictionaryForm) {
    EXPECT_THAT(faultOf(R"({"TX_SETTINGS": {"CH0": {"LR3_SETTINGS": {"NO_SUCH": "x"}}}})", true),
                testing::StartsWith("in direction TX_SETTINGS, lane CH0, rate LR3_SETTINGS the "
                                    "parameter \"NO_SUCH\" is not declared"));
}

TEST_F(UserParameterFault, IsNoneBehindALevelOfAnotherShape) {
    EXPECT_EQ(faultOf("[1, [2], [[3]], [[[]]]]"), "");
}

TEST_F(UserParameterFault, IsAListInPlaceOfTheParameters) {
    EXPECT_EQ(
        faultOf("[[[[4]]]]"),
        "in direction 0 (transmit), lane 0, rate 0 the parameters must be an object from names "
        "to values, and are a list.");
}

TEST_F(UserParameterFault, IsNotLookedForWithoutATypesFile) {
    Request request;
    request.file = directory_.write("request.json", R"({"userParams": [[[{"NO_SUCH": 1}]]]})");
    EXPECT_EQ(userParameterFault(request, directory_.file("missing.json")), "");
    EXPECT_EQ(userParameterFault(request, directory_.write("list.json", "[]")), "");
}

}  // namespace
}  // namespace lanecfg_test
