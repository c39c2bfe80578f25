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

    /// A request with user parameters of this text.
    Request requestOf(const std::string& userParams, bool isDictionaryForm = false) const {
        Request request;
        request.file = directory_.write("request.json", "{\"userParams\": " + userParams + "}");
        request.isDictionaryForm = isDictionaryForm;
        return request;
    }

    /// What is found in user parameters of this text.
    std::string faultOf(const std::string& userParams, bool isDictionaryForm = false) const {
        return userParameterFault(requestOf(userParams, isDictionaryForm), typesFile_);
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

/// What the library would take without a word.
class MisreadValue : public UserParameterFault {
  protected:
    std::string misreadIn(const std::string& userParams, bool isDictionaryForm = false) const {
        return misreadValue(requestOf(userParams, isDictionaryForm), typesFile_);
    }
    std::string misreadOf(const std::string& name, const std::string& value) const {
        return misreadIn("[[[{\"" + name + "\": " + value + "}]]]");
    }
    std::string misreadInDictionary(const std::string& name, const std::string& text) const {
        return misreadIn(
            R"({"RX_SETTINGS": {"CH2": {"LR0_SETTINGS": {")" + name + R"(": ")" + text + "\"}}}}",
            true);
    }
};

TEST_F(MisreadValue, IsNoneInAGoodRequest) {
    EXPECT_EQ(misreadIn(R"([[[{"A_string": "-1", "A_int": 7, "A_bool": true, "A_float": -0.5,
        "A_double": "-10.3125"}], [], [{}]], [[{"A_int": "4294967295", "A_string": 7}]]])"),
              "");
}

TEST_F(MisreadValue, IsAListAnObjectOrANullForAText) {
    const std::string start =
        "in direction 0 (transmit), lane 0, rate 0 the parameter \"A_string\" must be a text, and "
        "is ";
    EXPECT_EQ(misreadOf("A_string", "[\"RAW\"]"), start + "a list.");
    EXPECT_EQ(misreadOf("A_string", "[]"), start + "a list.");
    EXPECT_EQ(misreadOf("A_string", "{\"a\": \"RAW\"}"), start + "an object.");
    EXPECT_EQ(misreadOf("A_string", "null"), start + "null.");
}

TEST_F(MisreadValue, IsANegativeNumberForAWholeNumber) {
    const std::string start =
        "in direction 0 (transmit), lane 0, rate 0 the parameter \"A_int\" must be a whole number "
        "from 0 to 4294967295, and is ";
    EXPECT_EQ(misreadOf("A_int", "-1"), start + "-1.");
    EXPECT_EQ(misreadOf("A_int", "\"-1\""), start + "\"-1\".");
}

TEST_F(MisreadValue, IsNotWhatTheLibraryTellsItself) {
    EXPECT_EQ(misreadOf("A_int", "\"x\""), "");
    EXPECT_EQ(misreadOf("A_double", "[1]"), "");
    EXPECT_EQ(misreadOf("NO_SUCH", "[1]"), "");
}

TEST_F(MisreadValue, IsNamedBehindANameThatIsNotDeclared) {
    EXPECT_THAT(misreadIn(R"([[[{"A_NAME": 1, "A_string": []}]]])"),
                testing::HasSubstr("\"A_string\" must be a text"));
}

TEST_F(MisreadValue, IsALevelThatIsNoList) {
    EXPECT_EQ(misreadIn("[[], 7]"),
              "in direction 1 (receive) the lanes must be a list, and are 7.");
    EXPECT_EQ(misreadIn("[{\"a\": []}]"),
              "in direction 0 (transmit) the lanes must be a list, and are an object.");
    EXPECT_EQ(misreadIn("[[[], null]]"),
              "in direction 0 (transmit), lane 1 the rates must be a list, and are null.");
    EXPECT_EQ(misreadIn("[[[], {\"A_int\": 1}]]"),
              "in direction 0 (transmit), lane 1 the rates must be a list, and are an object.");
    EXPECT_EQ(misreadIn("[[[{}, \"x\"]]]"),
              "in direction 0 (transmit), lane 0, rate 1 the parameters must be an object from "
              "names to values, and are \"x\".");
}

TEST_F(MisreadValue, IsNoEmptyTextInPlaceOfAnEmptyList) {
    EXPECT_EQ(misreadIn(R"(["", ["", {}, [""], [[]]]])"), "");
}

TEST_F(MisreadValue, IsATextOfTheDictionaryFormThatIsNotWhollyOfItsType) {
    const std::string start =
        "in direction RX_SETTINGS, lane CH2, rate LR0_SETTINGS the parameter ";
    EXPECT_EQ(misreadInDictionary("A_double", "12.5x"),
              start + "\"A_double\" must be a number, and is \"12.5x\".");
    EXPECT_EQ(misreadInDictionary("A_int", "-1"),
              start + "\"A_int\" must be a whole number from 0 to 4294967295, and is \"-1\".");
    EXPECT_EQ(misreadInDictionary("A_bool", "yes"),
              start + "\"A_bool\" must be 0, 1, true or false, and is \"yes\".");
}

TEST_F(MisreadValue, IsNoTextOfTheDictionaryFormThatIsWhollyOfItsType) {
    EXPECT_EQ(misreadInDictionary("A_double", "-12.5"), "");
    EXPECT_EQ(misreadInDictionary("A_int", "12"), "");
    EXPECT_EQ(misreadInDictionary("A_bool", "TRUE"), "");
    EXPECT_EQ(misreadInDictionary("A_string", ""), "");
    EXPECT_EQ(misreadInDictionary("NO_SUCH", "x"), "");
}

TEST_F(MisreadValue, IsNotLookedForWithoutATypesFile) {
    EXPECT_EQ(misreadValue(requestOf(R"([[[{"A_string": []}]]])"), directory_.file("missing.json")),
              "");
}

}  // namespace
}  // namespace lanecfg_test
