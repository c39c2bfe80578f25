#include "support/reference_data.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using lanecfg_test::bundledRequest;
using lanecfg_test::bundledRequests;
using lanecfg_test::databaseOf;
using lanecfg_test::isDictionaryForm;
using lanecfg_test::referenceFile;
using lanecfg_test::requestPagePath;
using nlohmann::json;

/// One direction of a request as lanes of rates, whatever the form.
std::vector<json> ratesOf(const json& request, std::size_t direction) {
    std::vector<json> rates;
    const json& params = request.at("userParams");
    const json& lanes = isDictionaryForm(request)
                            ? params.at(direction == 0 ? "TX_SETTINGS" : "RX_SETTINGS")
                            : params.at(direction);
    for (const json& lane : lanes) {
        for (const json& rate : lane) {
            rates.push_back(rate);
        }
    }
    return rates;
}

class EveryRequest : public testing::TestWithParam<std::string> {
  protected:
    const json request = bundledRequest(GetParam());
};

TEST_P(EveryRequest, HasAPageAndSaysWhatItIs) {
    EXPECT_TRUE(std::filesystem::exists(requestPagePath(GetParam())));
    EXPECT_FALSE(request.at("description").get<std::string>().empty());
    EXPECT_FALSE(request.at("selector").get<std::string>().empty());
}

TEST_P(EveryRequest, GivesAtEveryRateWhatTheRateTableReads) {
    const std::vector<std::vector<std::string>> required{
        {"TX_LINE_RATE", "TX_DATA_ENCODING", "TX_USER_DATA_WIDTH", "TX_INT_DATA_WIDTH",
         "TX_BUFFER_MODE", "TX_PLL_TYPE", "TX_REFCLK_FREQUENCY"},
        {"RX_LINE_RATE", "RX_DATA_DECODING", "RX_USER_DATA_WIDTH", "RX_INT_DATA_WIDTH",
         "RX_BUFFER_MODE", "RX_PLL_TYPE", "RX_REFCLK_FREQUENCY"}};
    for (std::size_t direction = 0; direction < required.size(); ++direction) {
        for (const json& rate : ratesOf(request, direction)) {
            for (const std::string& name : required[direction]) {
                EXPECT_TRUE(rate.contains(name)) << name << " in " << rate;
            }
        }
    }
}

TEST_P(EveryRequest, UsesOnlyParametersOfItsFamily) {
    const json types = referenceFile(databaseOf(request), "parameters.json");
    for (std::size_t direction = 0; direction < 2; ++direction) {
        for (const json& rate : ratesOf(request, direction)) {
            for (const auto& parameter : rate.items()) {
                EXPECT_TRUE(types.contains(parameter.key())) << parameter.key();
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Requests, EveryRequest, testing::ValuesIn(bundledRequests()),
                         [](const auto& row) { return row.param; });
INSTANTIATE_TEST_SUITE_P(PackRequests, EveryRequest,
                         testing::ValuesIn(lanecfg_test::packRequests()), [](const auto& row) {
                             return std::filesystem::path(row.param).filename().string();
                         });

}  // namespace
