#include "model_update.h"

#include <lanecfg/ToolGTDRCModel.h>
#include <lanecfg/ToolSXD4DRCModel.h>

#include <boost/lexical_cast.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

// What holds for every update procedure of both models.

namespace {

using namespace lanecfg_test;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

/// A procedure, all that it is declared with, and what of it is read as a number.
struct Procedure {
    MakeModel make;
    std::string parameter;
    std::vector<std::string> arguments;
    std::vector<std::string> numbers;
};

std::ostream& operator<<(std::ostream& stream, const Procedure& procedure) {
    return stream << procedure.parameter;
}

std::vector<Procedure> subcoreProcedures() {
    const MakeModel make = makeModel<ToolGTDRCModel>;
    return {
        {make,
         "TX_QPLL_FRACN_NUMERATOR",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_QPLL_FRACN_NUMERATOR"},
         {"TX_LINE_RATE"}},
        {make,
         "TX_REFCLK_FREQUENCY",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_QPLL_FRACN_NUMERATOR", "TX_REFCLK_FREQUENCY"},
         {"TX_LINE_RATE", "TX_QPLL_FRACN_NUMERATOR"}},
        {make,
         "TX_ACTUAL_REFCLK_FREQUENCY",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_REFCLK_FREQUENCY", "TX_ACTUAL_REFCLK_FREQUENCY"},
         {"TX_LINE_RATE", "TX_REFCLK_FREQUENCY"}},
        {make,
         "TX_FRACN_ENABLED",
         {"TX_PLL_TYPE", "TX_LINE_RATE", "TX_REFCLK_FREQUENCY", "TX_FRACN_ENABLED"},
         {"TX_LINE_RATE", "TX_REFCLK_FREQUENCY"}},
        {make, "TXPROGDIV_FREQ_ENABLE", {"TX_OUTCLK_SOURCE", "TXPROGDIV_FREQ_ENABLE"}, {}},
        {make,
         "TXPROGDIV_FREQ_SOURCE",
         {"TX_ACTUAL_REFCLK_FREQUENCY", "TX_PLL_TYPE", "RX_PLL_TYPE", "TX_DATA_ENCODING",
          "TX_BUFFER_MODE", "TX_USER_DATA_WIDTH", "TX_OUTCLK_SOURCE", "TXPROGDIV_FREQ_ENABLE",
          "TXPROGDIV_FREQ_SOURCE"},
         {"TX_ACTUAL_REFCLK_FREQUENCY", "TX_USER_DATA_WIDTH"}},
        {make,
         "TXPROGDIV_FREQ_VAL",
         {"TX_ACTUAL_REFCLK_FREQUENCY", "TX_PLL_TYPE", "RX_PLL_TYPE", "TX_DATA_ENCODING",
          "TX_BUFFER_MODE", "TX_LINE_RATE", "TX_USER_DATA_WIDTH", "TX_OUTCLK_SOURCE",
          "TXPROGDIV_FREQ_ENABLE", "TXPROGDIV_FREQ_SOURCE", "TXPROGDIV_FREQ_VAL"},
         {"TX_ACTUAL_REFCLK_FREQUENCY", "TX_LINE_RATE", "TX_USER_DATA_WIDTH"}},
        {make,
         "RX_ACTUAL_REFCLK_FREQUENCY",
         {"RX_PLL_TYPE", "RX_LINE_RATE", "RX_REFCLK_FREQUENCY", "RX_ACTUAL_REFCLK_FREQUENCY"},
         {"RX_LINE_RATE", "RX_REFCLK_FREQUENCY"}},
        {make,
         "RX_FRACN_ENABLED",
         {"RX_PLL_TYPE", "RX_LINE_RATE", "RX_REFCLK_FREQUENCY", "RX_FRACN_ENABLED"},
         {"RX_LINE_RATE", "RX_REFCLK_FREQUENCY"}},
        {make, "RXPROGDIV_FREQ_ENABLE", {"RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE"}, {}},
        {make,
         "RXPROGDIV_FREQ_SOURCE",
         {"RX_PLL_TYPE", "RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE", "RXPROGDIV_FREQ_SOURCE"},
         {}},
        {make,
         "RXPROGDIV_FREQ_VAL",
         {"RX_PLL_TYPE", "RX_LINE_RATE", "RX_BUFFER_MODE", "RX_USER_DATA_WIDTH", "RX_DATA_DECODING",
          "RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE", "RXPROGDIV_FREQ_SOURCE",
          "RXPROGDIV_FREQ_VAL"},
         {"RX_LINE_RATE", "RX_USER_DATA_WIDTH"}},
    };
}

std::vector<Procedure> sxd4Procedures() {
    const MakeModel make = makeModel<ToolSXD4DRCModel>;
    return {
        {make,
         "FRACN_NUMERATOR",
         {"TX_LINE_RATE", "FRACN_NUMERATOR", "TX_PAM_SEL"},
         {"TX_LINE_RATE"}},
        {make,
         "REQUESTED_REFCLK_FREQ",
         {"TX_LINE_RATE", "FRACN_NUMERATOR", "REQUESTED_REFCLK_FREQ", "TX_PAM_SEL"},
         {"TX_LINE_RATE", "FRACN_NUMERATOR"}},
        {make,
         "ACTUAL_REFCLK_FREQ",
         {"TX_LINE_RATE", "REQUESTED_REFCLK_FREQ", "ACTUAL_REFCLK_FREQ", "TX_PAM_SEL"},
         {"TX_LINE_RATE", "REQUESTED_REFCLK_FREQ"}},
        {make,
         "FRACN_ENABLED",
         {"TX_LINE_RATE", "REQUESTED_REFCLK_FREQ", "FRACN_ENABLED", "TX_PAM_SEL"},
         {"TX_LINE_RATE", "REQUESTED_REFCLK_FREQ"}},
        {make, "TXPROGDIV_FREQ_ENABLE", {"TX_OUTCLK_SOURCE", "TXPROGDIV_FREQ_ENABLE"}, {}},
        {make,
         "TXPROGDIV_FREQ_VAL",
         {"ACTUAL_REFCLK_FREQ", "TX_LINE_RATE", "TX_INT_DATA_WIDTH", "TX_OUTCLK_SOURCE",
          "TXPROGDIV_FREQ_ENABLE", "TXPROGDIV_FREQ_VAL", "TX_PAM_SEL"},
         {"TX_LINE_RATE", "TX_INT_DATA_WIDTH"}},
        {make, "RXPROGDIV_FREQ_ENABLE", {"RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE"}, {}},
        {make,
         "RXPROGDIV_FREQ_VAL",
         {"RX_LINE_RATE", "RX_INT_DATA_WIDTH", "RX_OUTCLK_SOURCE", "RXPROGDIV_FREQ_ENABLE",
          "RXPROGDIV_FREQ_SOURCE", "RXPROGDIV_FREQ_VAL", "RX_PAM_SEL"},
         {"RX_LINE_RATE", "RX_INT_DATA_WIDTH"}},
    };
}

std::string procedureName(const Procedure& procedure) {
    return "update_PARAM_VALUE." + procedure.parameter;
}

// The tables of procedures

void expectProcedures(const std::vector<Procedure>& procedures) {
    std::vector<std::string> names;
    std::transform(procedures.begin(), procedures.end(), std::back_inserter(names), procedureName);
    std::sort(names.begin(), names.end());
    EXPECT_THAT(procedures.front().make()->getUpdateProcNames(), ElementsAreArray(names));
}

TEST(UpdateProcedures, ofTheSubcoreAreTwelve) {
    EXPECT_EQ(subcoreProcedures().size(), 12U);
    expectProcedures(subcoreProcedures());
}

TEST(UpdateProcedures, ofSxd4AreEight) {
    EXPECT_EQ(sxd4Procedures().size(), 8U);
    expectProcedures(sxd4Procedures());
}

TEST(UpdateProcedures, areTheSameAfterASecondInitialisation) {
    for (const MakeModel make : {makeModel<ToolGTDRCModel>, makeModel<ToolSXD4DRCModel>}) {
        const auto model = make();
        const std::vector<std::string> names = model->getUpdateProcNames();
        model->init();
        EXPECT_EQ(model->getUpdateProcNames(), names);
    }
}

TEST(UpdateProcedures, withAnUnknownNameChangeNothing) {
    const Parameters given{{"TX_LINE_RATE", "ten"}};
    for (const MakeModel make : {makeModel<ToolGTDRCModel>, makeModel<ToolSXD4DRCModel>}) {
        const auto model = make();
        for (const char* unknown : {"", "TX_LINE_RATE", "txprogdiv_freq_enable"}) {
            EXPECT_EQ(evaluate(*model, unknown, given), ModelUpdate{given}) << unknown;
        }
    }
}

TEST(UpdateProcedures, areFoundByTheirFullNamesOnly) {
    ToolGTDRCModel model("model");
    std::map<std::string, std::string> values{{"PARAM_VALUE.TXPROGDIV_FREQ_ENABLE", before}};
    bool enabled = true;
    std::vector<std::string> range;
    for (const char* name : {"TXPROGDIV_FREQ_ENABLE", "PARAM_VALUE.TXPROGDIV_FREQ_ENABLE",
                             "update_TXPROGDIV_FREQ_ENABLE"}) {
        model.evalUpdateProc(name, values, enabled, range);
        EXPECT_EQ(values.at("PARAM_VALUE.TXPROGDIV_FREQ_ENABLE"), before) << name;
    }
}

TEST(UpdateProcedures, ofSxd4HaveNoSourceOfTheOutputClock) {
    ToolSXD4DRCModel model("model");
    const Parameters given{{"RXPROGDIV_FREQ_SOURCE", before}};
    EXPECT_EQ(evaluate(model, "RXPROGDIV_FREQ_SOURCE", given), ModelUpdate{given});
}

// One procedure

class UpdateProcedure : public testing::TestWithParam<Procedure> {
  protected:
    ModelUpdate update(const Parameters& given) {
        return evaluate(*model_, GetParam().parameter, given);
    }

    /// Every argument with the same text.
    static Parameters allArguments(const std::string& text) {
        Parameters parameters;
        for (const std::string& argument : GetParam().arguments) {
            parameters[argument] = text;
        }
        return parameters;
    }

    std::unique_ptr<ToolDRCModel> model_ = GetParam().make();
};

TEST_P(UpdateProcedure, declaresItsArguments) {
    std::vector<std::string> expected;
    for (const std::string& argument : GetParam().arguments) {
        expected.push_back("PARAM_VALUE." + argument);
    }
    std::sort(expected.begin(), expected.end());
    std::vector<std::string> declared;
    model_->getProcArgNames(procedureName(GetParam()), declared);
    EXPECT_EQ(declared, expected);
}

TEST_P(UpdateProcedure, writesNothingThatIsMissing) {
    EXPECT_THAT(update({}).values, IsEmpty());

    Parameters others = allArguments("");
    others.erase(GetParam().parameter);
    EXPECT_EQ(update(others).values, others);
}

TEST_P(UpdateProcedure, takesEmptyValuesForMissingOnes) {
    const ModelUpdate withoutArguments = update({{GetParam().parameter, ""}});
    ModelUpdate withEmptyArguments = update(allArguments(""));
    const std::string& parameter = GetParam().parameter;
    EXPECT_EQ(withEmptyArguments.values.at(parameter), withoutArguments.values.at(parameter));
    EXPECT_EQ(withEmptyArguments.enabled, withoutArguments.enabled);
    EXPECT_EQ(withEmptyArguments.range, withoutArguments.range);
}

TEST_P(UpdateProcedure, letsOutATextThatIsNoNumberAndChangesNothing) {
    for (const std::string& number : GetParam().numbers) {
        for (const char* text :
             {"ten", " 1", "1 ", "1,5", "1.5.", "0x10", "1e", "1e9999", "-", "1 000", "true"}) {
            Parameters given = allArguments("");
            given[GetParam().parameter] = before;
            given[number] = text;
            auto values = hostValues(given);
            bool enabled = true;
            std::vector<std::string> range{"older"};
            EXPECT_THROW(model_->evalUpdateProc(procedureName(GetParam()), values, enabled, range),
                         boost::bad_lexical_cast)
                << number << ": " << text;
            EXPECT_EQ(values, hostValues(given));
            EXPECT_TRUE(enabled);
            EXPECT_THAT(range, ElementsAre("older"));
        }
    }
}

TEST_P(UpdateProcedure, readsNothingElseAsANumber) {
    Parameters given = allArguments("ten");
    for (const std::string& number : GetParam().numbers) {
        given[number] = "1";
    }
    EXPECT_NO_THROW(update(given));
}

/// Values of arguments drawn from what is known, unknown, missing and absurd.
class RandomArguments {
  public:
    explicit RandomArguments(const Procedure& procedure) : procedure_(procedure) {}

    Parameters next() {
        Parameters parameters;
        for (const std::string& argument : procedure_.arguments) {
            if (draw(12) != 0) {
                parameters[argument] = isNumber(argument) ? numberText() : wordText();
            }
        }
        return parameters;
    }

  private:
    bool isNumber(const std::string& argument) const {
        const std::vector<std::string>& numbers = procedure_.numbers;
        return std::find(numbers.begin(), numbers.end(), argument) != numbers.end();
    }
    std::string numberText() {
        static const std::vector<std::string> texts{"",
                                                    "0",
                                                    "-0",
                                                    "1",
                                                    "10",
                                                    "16",
                                                    "20",
                                                    "32",
                                                    "64",
                                                    "80",
                                                    "128",
                                                    "1.25",
                                                    "10.3125",
                                                    "16.375",
                                                    "25.78125",
                                                    "28.1",
                                                    "56",
                                                    "100",
                                                    "156.25",
                                                    "-1",
                                                    "-40",
                                                    "1e-45",
                                                    "1e-30",
                                                    "1e30",
                                                    "3.4028234e38",
                                                    "-3.4028234e38",
                                                    "inf",
                                                    "-inf",
                                                    "nan",
                                                    "infinity"};
        return draw(3) == 0 ? std::to_string(draw(60000)) + "e-3" : texts[draw(texts.size())];
    }
    std::string wordText() {
        static const std::vector<std::string> texts{
            "",   "LCPLL", "LCPLL", "RPLL",         "lcpll",        "true", "true", "false",
            "1",  "0",     "8B10B", "64B66B_ASYNC", "TXPROGDIVCLK", "NRZ",  "PAM4", "RXPROGDIVCLK",
            "nan"};
        return texts[draw(texts.size())];
    }
    std::size_t draw(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(engine_);
    }

    const Procedure& procedure_;
    std::mt19937 engine_{20240611};  // NOLINT(cert-msc51-cpp): the same sequence in every run
};

constexpr int rounds = 150;

TEST_P(UpdateProcedure, givesTheSameAgainAndFromAFreshModel) {
    RandomArguments arguments(GetParam());
    for (int round = 0; round < rounds; ++round) {
        const Parameters given = arguments.next();
        const ModelUpdate first = update(given);
        // Another edit between does not show.
        update(arguments.next());
        EXPECT_EQ(update(given), first);
        EXPECT_EQ(update(first.values), first);
        EXPECT_EQ(evaluate(*GetParam().make(), GetParam().parameter, given), first);
    }
}

TEST_P(UpdateProcedure, changesNoOtherValue) {
    RandomArguments arguments(GetParam());
    for (int round = 0; round < rounds; ++round) {
        Parameters given = arguments.next();
        given["UNKNOWN"] = "stays";
        Parameters after = update(given).values;
        const auto own = given.find(GetParam().parameter);
        if (own != given.end()) {
            after[own->first] = own->second;
        }
        EXPECT_EQ(after, given);
    }
}

TEST_P(UpdateProcedure, offersItsValueUnlessTheValueStays) {
    RandomArguments arguments(GetParam());
    for (int round = 0; round < rounds; ++round) {
        Parameters given = arguments.next();
        given[GetParam().parameter] = before;
        const ModelUpdate after = update(given);
        const std::string& value = after.values.at(GetParam().parameter);
        if (value != before && !after.range.empty()) {
            EXPECT_THAT(after.range, testing::Contains(value));
        }
    }
}

std::string nameOf(const testing::TestParamInfo<Procedure>& info) {
    return info.param.parameter;
}

INSTANTIATE_TEST_SUITE_P(Subcore, UpdateProcedure, testing::ValuesIn(subcoreProcedures()), nameOf);
INSTANTIATE_TEST_SUITE_P(Sxd4, UpdateProcedure, testing::ValuesIn(sxd4Procedures()), nameOf);

}  // namespace
