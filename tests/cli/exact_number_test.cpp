#include "exact_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>

namespace lanecfg_test {
namespace {

using sable_lanecfg::tool::exactJson;
using sable_lanecfg::tool::exactText;
using sable_lanecfg::tool::Json;
using sable_lanecfg::tool::jsonText;

TEST(ExactNumber, HasNoMoreDigitsThanItNeeds) {
    EXPECT_EQ(exactText(156.25), "156.25");
    EXPECT_EQ(exactText(8.0), "8");
    EXPECT_EQ(exactText(0.1), "0.1");
    EXPECT_EQ(exactText(0.1F), "0.1");
}

TEST(ExactNumber, HasAllTheDigitsThatItNeeds) {
    EXPECT_EQ(exactText(167.331640625), "167.331640625");
    EXPECT_EQ(exactText(1.0 / 3.0), "0.3333333333333333");
}

TEST(ExactNumber, IsAWordWithoutDigits) {
    EXPECT_EQ(exactText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(exactText(-std::numeric_limits<float>::infinity()), "-inf");
    EXPECT_EQ(exactText(std::nan("")), "nan");
    EXPECT_EQ(exactText(-std::nan("")), "nan");
}

TEST(ExactNumber, IsAJsonTextWhereJsonHasNoNumber) {
    EXPECT_EQ(exactJson(128.90625), Json(128.90625));
    EXPECT_EQ(jsonText(exactJson(std::numeric_limits<double>::infinity())), "\"inf\"");
    EXPECT_EQ(jsonText(exactJson(std::nan(""))), "\"nan\"");
}

TEST(ExactNumber, IsReadBackAsItWas) {
    std::mt19937_64 random(5);
    std::uniform_real_distribution<double> exponent(-300.0, 300.0);
    for (int round = 0; round < 1000; ++round) {
        const double number = std::pow(10.0, exponent(random));
        EXPECT_EQ(std::stod(exactText(number)), number);
        EXPECT_EQ(Json::parse(jsonText(exactJson(number))).get<double>(), number);
        const auto single = static_cast<float>(number);
        if (std::isnormal(single)) {
            EXPECT_EQ(std::stof(exactText(single)), single);
        }
    }
}

}  // namespace
}  // namespace lanecfg_test
