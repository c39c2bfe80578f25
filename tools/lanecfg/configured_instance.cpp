#include "configured_instance.h"

#include "controller_registers.h"
#include "errors.h"
#include "request_checks.h"
#include "run_warnings.h"
#include "standard_output_guard.h"
#include "table.h"

#include <lanecfg/lane_cfg_ip_mgr.h>

#include <stdexcept>

namespace sable_lanecfg::tool {
namespace {

const std::string instanceName = "lanecfg";

void initialise(const Request& request, const Database& database) {
    const RuleSet& rules = *request.rules;
    const RequestDictionaries& dictionaries = request.dictionaries;
    if (request.isDictionaryForm) {
        lane_cfg_ip_mgr::initilizeDataWithDict(
            instanceName, rules.family, rules.selector, request.part, dictionaries.options,
            dictionaries.laneUsage, dictionaries.quadUsage, dictionaries.userParams,
            database.parametersFile(), database.registersFile(), database.deviceFile());
    } else {
        lane_cfg_ip_mgr::initilizeData(instanceName, rules.family, rules.selector,
                                       database.parametersFile(), request.file,
                                       database.registersFile(), database.deviceFile());
    }
}

bool isStable(const RuleSet& rules) {
    return rules.selector == "stable";
}

gt_rule_engine* madeEngine(const RuleSet& rules) {
    if (isStable(rules)) {
        return lane_cfg_ip_mgr::getIterStableIPInstance(instanceName);
    }
    return lane_cfg_ip_mgr::getIPInstance(instanceName);
}

/// Whether the library has entered the name, with or without an instance behind it.
bool isNameKnown(const RuleSet& rules) {
    return isStable(rules) ? lane_cfg_ip_mgr::m_iter_stable_instances.count(instanceName) != 0
                           : lane_cfg_ip_mgr::m_instances.count(instanceName) != 0;
}

[[noreturn]] void throwNoInstance(const Request& request, const Database& database) {
    const RuleSet& rules = *request.rules;
    if (isNameKnown(rules)) {
        throw RequestError("Request " + request.file + ": the " + rules.selector + " rules of " +
                           rules.family +
                           " are not part of this build. lanecfg families lists "
                           "those that are.");
    }
    throwUnusableParameters(request, database);
}

/// Text about the first register whose offset the library can't read, empty when there is none.
std::string offsetFault(const std::map<std::string, attributeInfo>& registers,
                        const Database& database) {
    for (const auto& [name, info] : registers) {
        if (!isPortType(info.dstSubBlock) && !offsetOf(info)) {
            return "The register " + name + " of the file " + database.registersFile() +
                   " has the \"Offset\" " + jsonText(Json(info.Offset)) +
                   ", which is no hexadecimal number. Give its offset in words, such as \"0x1a\"; "
                   "lanecfg check-database tells of all that are none.";
        }
    }
    return {};
}

std::string descriptionOf(const Request& request) {
    const std::string text = "Running the " + request.rules->selector + " rules of " +
                             request.rules->family + " on " + request.file;
    return request.description.empty() ? text : text + " (" + request.description + ")";
}

}  // namespace

ConfiguredInstance::ConfiguredInstance(const Request& request, const Database& database,
                                       Console& console)
    : request_(request),
      database_(database),
      console_(console),
      errorsBefore_(console.errorCount()) {
    tellOfDoubts(request, database, console);
    console.progress(descriptionOf(request));
    try {
        const StandardOutputGuard guard;
        initialise(request, database);
    } catch (...) {
        throw RequestError("Request " + request.file + " failed on the database " +
                           database.folder.string() + ": " + currentExceptionText());
    }
    engine_ = madeEngine(*request.rules);
    if (engine_ == nullptr) {
        throwNoInstance(request, database);
    }
    tellOfRun(request, *engine_, console);
}

ConfiguredInstance::~ConfiguredInstance() {
    lane_cfg_ip_mgr::releaseData(instanceName);
}

void ConfiguredInstance::finish() const {
    console_.endProgress();
    tellOfErrors(request_, database_, console_, errorsBefore_);
}

template <class Query>
auto ConfiguredInstance::ask(const char* what, const Query& query) {
    console_.progress(std::string("Asking for the ") + what);
    try {
        const StandardOutputGuard guard;
        auto answer = query(instanceName, request_.rules->family, request_.rules->selector);
        console_.endProgress();
        return answer;
    } catch (...) {
        throw RequestError("Request " + request_.file + " on the database " +
                           database_.folder.string() + ": no " + what + ": " + reasonOfFailure());
    }
}

/// Text about the exception that is being handled. That of an offset tells no more than the name of
/// a conversion.
std::string ConfiguredInstance::reasonOfFailure() const {
    try {
        throw;
    } catch (const std::logic_error& error) {
        const bool isOfOffset = error.what() == std::string("stoul");
        const std::string fault =
            isOfOffset ? offsetFault(engine_->attributes, database_) : std::string();
        return fault.empty() ? currentExceptionText() : fault;
    } catch (...) {
        return currentExceptionText();
    }
}

textMap ConfiguredInstance::attributes() {
    return ask("attributes", lane_cfg_ip_mgr::getAttributes);
}

textMap ConfiguredInstance::outputClocks() {
    return ask("output clocks", lane_cfg_ip_mgr::getOutClkFrequencies);
}

textMap ConfiguredInstance::memoryImage() {
    return ask("memory image", lane_cfg_ip_mgr::getMemContent);
}

std::string ConfiguredInstance::rateTable() {
    return ask("rate table",
               [this](const auto&...) { return engine_->generateRateTableInBinary(); });
}

bool ConfiguredInstance::updateElf(const std::string& elfFile, const std::string& workDir) {
    return ask("ELF update", [&](const std::string& name, const std::string& family,
                                 const std::string& selector) {
        try {
            return lane_cfg_ip_mgr::updateELF(name, family, selector, elfFile, workDir) == 1;
        } catch (const std::string& text) {
            // A text is all that the library hands over. Making the table once more shows the
            // exception behind it.
            (void)engine_->generateRateTableInBinary();
            throw RequestError(text);
        }
    });
}

std::vector<std::string> ConfiguredInstance::log() {
    return lane_cfg_ip_mgr::getLogContent();
}

RequestRun::RequestRun(const RequestOptions& options, const OutputOptions& output, Console& console)
    : inputs(options, output), instance(inputs.request, inputs.database, console) {}

}  // namespace sable_lanecfg::tool
