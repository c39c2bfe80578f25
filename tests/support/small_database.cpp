#include "support/small_database.h"

namespace lanecfg_test {

namespace {

constexpr const char* parametersText = R"({
    "TX_LINE_RATE": {"type": "double", "description": "Gb/s", "default_value": "10.3125"},
    "RX_LINE_RATE": {"type": "double", "description": "Gb/s", "default_value": "10.3125"}
})";

constexpr const char* requestText = R"({
    "quadUsage": {},
    "laneUsage": [
        {"group": "0", "tx": [0], "rx": [0], "txrate": ["A"], "rxrate": ["A"], "rates": [1]}
    ],
    "userParams": [
        [[{"TX_LINE_RATE": 12.5}]],
        [[{"RX_LINE_RATE": 12.5}]]
    ]
})";

constexpr const char* registersText = R"({
    "TX_CFG": {"dstSubBlock": "channel", "Offset": "0x0", "fields": {"TX_CFG.MODE": [0, 4]}},
    "RX_CFG": {"dstSubBlock": "channel", "Offset": "0x4", "fields": {"RX_CFG.MODE": [0, 4]}}
})";

constexpr const char* deviceText = R"({"-3": {"FLCPLLRANGE": ["8.0", "16.375"]}})";

}  // namespace

SmallDatabase::SmallDatabase()
    : parameters(nlohmann::json::parse(parametersText)),
      request(nlohmann::json::parse(requestText)),
      registers(nlohmann::json::parse(registersText)),
      device(nlohmann::json::parse(deviceText)) {}

DatabaseFiles SmallDatabase::writeTo(const TemporaryDirectory& directory) const {
    return {directory.write("parameters.json", parameters.dump()),
            directory.write("request.json", request.dump()),
            directory.write("registers.json", registers.dump()),
            directory.write("device.json", device.dump())};
}

}  // namespace lanecfg_test
