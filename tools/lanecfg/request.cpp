#include "request.h"

#include "database.h"
#include "errors.h"
#include "json_document.h"
#include "option_value.h"
#include "request_dictionaries.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>

namespace sable_lanecfg::tool {
namespace {

constexpr const char* defaultSelector = "live";

/// Keys of the root that the program or the library reads in the file form.
constexpr std::array<const char*, 7> rootKeys = {
    "family", "selector", "part", "description", "laneUsage", "quadUsage", "userParams"};

/// In the dictionary form every key stands once. In the file form repeated keys below the root are
/// one of the ways to write quads.
void refuseRepeatedKeys(const std::string& file, const JsonDocument& document,
                        bool isDictionaryForm) {
    for (const std::string& key : document.repeatedKeys) {
        const bool isRootKey = std::find(rootKeys.begin(), rootKeys.end(), key) != rootKeys.end();
        if (isDictionaryForm || isRootKey) {
            throw RequestError("Request " + file + ": the key \"" + key +
                               "\" stands more than once. Remove all but one.");
        }
    }
}

[[noreturn]] void throwWrongShape(const std::string& file, const char* key,
                                  const std::string& wanted) {
    throw RequestError("Request " + file + ": the key \"" + key + "\" must be " + wanted + ".");
}

/// The library takes what is no list for an empty one, and would answer without a word.
void requireShapesOfFileForm(const std::string& file, const nlohmann::json& root) {
    const auto laneUsage = root.find("laneUsage");
    if (laneUsage == root.end() || !laneUsage->is_array()) {
        throwWrongShape(file, "laneUsage",
                        "a list in the file form, or an object in the dictionary form");
    }
    const auto userParams = root.find("userParams");
    if (userParams == root.end() || !userParams->is_array() || userParams->empty()) {
        throwWrongShape(file, "userParams",
                        "a list with an element for each direction in the file form");
    }
    const auto quadUsage = root.find("quadUsage");
    if (quadUsage != root.end() && !quadUsage->is_object()) {
        throwWrongShape(file, "quadUsage", "an object");
    }
}

/// A root key of the program's own, empty when it is not there.
std::string rootText(const std::string& file, const nlohmann::json& root, const char* key) {
    const auto found = root.find(key);
    if (found == root.end()) {
        return {};
    }
    if (!found->is_string()) {
        throw RequestError("Request " + file + ": the key \"" + key + "\" must be a text.");
    }
    return found->get<std::string>();
}

const RuleSet& rulesOf(const std::string& file, const std::string& family,
                       const std::string& selector) {
    if (family.empty()) {
        throw UsageError("Request " + file +
                         " names no family. Give --family, or the key "
                         "\"family\" in the file; known are " +
                         listed(familyWords()) + ".");
    }
    const std::vector<std::string> words = familyWords();
    if (std::find(words.begin(), words.end(), family) == words.end()) {
        throw RequestError("Request " + file + ": the family \"" + family +
                           "\" is unknown. The "
                           "key \"family\" takes " +
                           listed(words) + "; --family overrides it.");
    }
    const RuleSet* const rules = findRuleSet(family, selector);
    if (rules == nullptr) {
        throw RequestError("Request " + file + ": the family " + family + " has no \"" + selector +
                           "\" rules. The key \"selector\" takes " + listed(selectorWords()) +
                           ", --selector overrides it, and lanecfg families lists which families "
                           "have which.");
    }
    return *rules;
}

const std::string& firstGiven(const std::string& option, const std::string& other) {
    return option.empty() ? other : option;
}

}  // namespace

void addRequestOptions(CLI::App& command, RequestOptions& options) {
    command.add_option("request", options.file, "Request: a user parameter file of the library")
        ->type_name("REQUEST")
        ->check(emptyValueFault)
        ->required();
    command.add_option("--family", options.family, "Family, in place of the request's own")
        ->check(CLI::IsMember(familyWords()));
    command
        .add_option("--selector", options.selector,
                    "Current rules (live) or frozen ones (stable), in place of the request's own")
        ->transform(CLI::IsMember(selectorWords(), CLI::ignore_case));
    command
        .add_option("--part", options.part,
                    "Part name of a request in the dictionary form, DEVICE-PACKAGE-SPEED-"
                    "TEMPERATURE-ARCHITECTURE-REVISION-FAMILY, in place of the request's own")
        ->type_name("PART");
    addDatabaseOption(command, options.database);
}

Request readRequest(const RequestOptions& options) {
    // Lists are the file form's, which the library reads itself.
    const JsonDocument document = readJsonDocument(options.file, Lists::abridged);
    const nlohmann::json& root = document.root;
    if (!root.is_object()) {
        throw RequestError("Error in parsing the file " + options.file +
                           ". A request is a JSON object with the keys \"laneUsage\" and "
                           "\"userParams\".");
    }
    const auto laneUsage = root.find("laneUsage");
    const bool isDictionaryForm = laneUsage != root.end() && laneUsage->is_object();
    refuseRepeatedKeys(options.file, document, isDictionaryForm);
    const std::string ownSelector = rootText(options.file, root, "selector");
    Request request;
    request.file = options.file;
    request.rules =
        &rulesOf(options.file, firstGiven(options.family, rootText(options.file, root, "family")),
                 firstGiven(options.selector, firstGiven(ownSelector, defaultSelector)));
    request.description = rootText(options.file, root, "description");
    request.part = firstGiven(options.part, rootText(options.file, root, "part"));
    request.isDictionaryForm = isDictionaryForm;
    if (isDictionaryForm) {
        request.dictionaries = readDictionaries(options.file, root);
        return request;
    }
    if (!request.part.empty()) {
        throw UsageError("Request " + options.file +
                         " has the file form (\"laneUsage\" is no "
                         "object), which takes no part name. Leave out --part and the key "
                         "\"part\", or write the request in the dictionary form.");
    }
    requireShapesOfFileForm(options.file, root);
    return request;
}

}  // namespace sable_lanecfg::tool
