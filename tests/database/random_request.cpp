#include "database/random_request.h"

#include <string>
#include <vector>

namespace lanecfg_test {

using nlohmann::json;

RandomRequest::RandomRequest(unsigned seed)
    : types(json::object()),
      file({{"quadUsage", json::object()},
            {"laneUsage", json::array()},
            {"userParams", json::array()}}),
      random_(seed) {
    addTypes();
    addQuads();
    addLanesInUse();
    addSection("TX_SETTINGS");
    addSection("RX_SETTINGS");
}

unsigned RandomRequest::upTo(unsigned largest) {
    return std::uniform_int_distribution<unsigned>(0, largest)(random_);
}

std::string RandomRequest::word() {
    static const std::string characters = "AZaz09_. -[]{}\"\\:\n\t\xc3\xa4%";
    std::string result;
    for (unsigned length = upTo(8); length > 0; --length) {
        // The two bytes of the one character beyond ASCII stay together.
        const std::size_t at = upTo(static_cast<unsigned>(characters.size()) - 1);
        const bool beyondAscii = characters[at] == '\xc3' || characters[at] == '\xa4';
        result += beyondAscii ? "\xc3\xa4" : std::string(1, characters[at]);
    }
    return result;
}

RandomRequest::Value RandomRequest::value(const std::string& type) {
    if (type == "string") {
        const std::string text = word();
        return {text, text};
    }
    if (type == "int") {
        const unsigned number = std::uniform_int_distribution<unsigned>()(random_);
        const std::string text = std::to_string(number);
        return {text, upTo(1) == 0 ? json(number) : json(text)};
    }
    if (type == "bool") {
        const bool flag = upTo(1) == 0;
        return upTo(1) == 0 ? Value{flag ? "true" : "false", flag}
                            : Value{flag ? "1" : "0", flag ? "1" : "0"};
    }
    const double number = std::uniform_real_distribution<double>(-1e6, 1e6)(random_);
    const json shortest = number;
    return {shortest.dump(), upTo(1) == 0 ? shortest : json(shortest.dump())};
}

RandomRequest::Value RandomRequest::words() {
    Value result{word(), json::array()};
    result.json.push_back(result.text);
    for (unsigned more = upTo(3); more > 0; --more) {
        const std::string next = word();
        result.text += "," + next;
        result.json.push_back(next);
    }
    return result;
}

RandomRequest::Value RandomRequest::numbers() {
    Value result{"0", json::array({0})};
    for (unsigned more = upTo(3); more > 0; --more) {
        const unsigned next = upTo(1000);
        result.text += "," + std::to_string(next);
        result.json.push_back(next);
    }
    return result;
}

void RandomRequest::addTypes() {
    const std::vector<std::string> kinds = {"string", "int", "bool", "float", "double"};
    for (unsigned number = upTo(20); number > 0; --number) {
        types["P" + std::to_string(number)] = {
            {"type", kinds[upTo(4)]}, {"description", word()}, {"default_value", word()}};
    }
}

void RandomRequest::addQuads() {
    for (const char* usageKey : {"RX_QUAD_CH", "TX_QUAD_CH"}) {
        auto& quads = quadUsage[usageKey];
        file["quadUsage"][usageKey] = json::array();
        for (unsigned quad = upTo(3); quad > 0; --quad) {
            const std::string name = "Q" + std::to_string(quad);
            const Value channels = words();
            const Value clocks = words();
            const Value current = value("bool");
            quads[name] = {{"CHANNELS", channels.text},
                           {"MSTRCLK", clocks.text},
                           {"IS_CURRENT_QUAD", current.text}};
            file["quadUsage"][usageKey].push_back({{name, channels.json},
                                                   {"MSTRCLK", clocks.json},
                                                   {"IS_CURRENT_QUAD", current.json}});
        }
    }
}

void RandomRequest::addLanesInUse() {
    for (unsigned lane = 0, count = upTo(4); lane < count; ++lane) {
        json& inFile = file["laneUsage"].emplace_back(json::object());
        sable_lanecfg::textMap& inDictionary = laneUsage[std::to_string(lane)];
        const auto add = [&](const std::string& key, const Value& value) {
            inFile[key] = value.json;
            inDictionary[key] = value.text;
        };
        add("group", value("string"));
        add("tx", numbers());
        add("rx", numbers());
        add("txrate", words());
        add("rxrate", words());
        add("rates", numbers());
    }
}

void RandomRequest::addSection(const std::string& section) {
    json& direction = file["userParams"].emplace_back(json::array());
    sable_lanecfg::settingsMap& settings = userParams[section];
    for (unsigned lane = 0, lanes = upTo(4); lane < lanes; ++lane) {
        json& laneInFile = direction.emplace_back(json::array());
        auto& laneInDictionary = settings["CH" + std::to_string(lane)];
        for (unsigned rate = 0, rates = upTo(14); rate < rates; ++rate) {
            addRate(laneInDictionary["LR" + std::to_string(rate) + "_SETTINGS"],
                    laneInFile.emplace_back(json::object()));
        }
    }
}

void RandomRequest::addRate(sable_lanecfg::textMap& texts, json& members) {
    for (const auto& [name, type] : types.items()) {
        if (upTo(3) != 0) {
            const Value parameter = value(type["type"]);
            texts[name] = parameter.text;
            members[name] = parameter.json;
        }
    }
}

}  // namespace lanecfg_test
