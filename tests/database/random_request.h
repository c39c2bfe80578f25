#pragma once

#include <lanecfg/gt_db_load.h>

#include <nlohmann/json.hpp>

#include <random>

namespace lanecfg_test {

/// One request in both forms, with the types of its parameters: two directions of up to four
/// lanes with up to fourteen rates each, lanes in use, and quads, some of them under one name.
struct RandomRequest {
    explicit RandomRequest(unsigned seed);

    nlohmann::json types;
    nlohmann::json file;
    sable_lanecfg::userParamMap userParams;
    sable_lanecfg::laneUsageMap laneUsage;
    sable_lanecfg::quadUsageMap quadUsage;

  private:
    /// A text for a dictionary and the JSON value that stands for it in a file.
    struct Value {
        std::string text;
        nlohmann::json json;
    };

    unsigned upTo(unsigned largest);
    std::string word();
    Value value(const std::string& type);
    Value words();
    Value numbers();

    void addTypes();
    void addQuads();
    void addLanesInUse();
    void addSection(const std::string& section);
    void addRate(sable_lanecfg::textMap& texts, nlohmann::json& members);

    std::mt19937 random_;
};

}  // namespace lanecfg_test
