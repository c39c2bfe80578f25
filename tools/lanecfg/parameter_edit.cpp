#include "parameter_edit.h"

#include "errors.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/algorithm/string/predicate.hpp>
#include <boost/lexical_cast/bad_lexical_cast.hpp>

#include <algorithm>
#include <optional>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

constexpr const char* parameterPrefix = "PARAM_VALUE.";
constexpr const char* procedurePrefix = "update_";

using Values = std::map<std::string, std::string>;

/// The name that the word stands for: itself, or itself behind one of the prefixes. None when there
/// is no such name.
std::optional<std::string> nameFor(const std::string& word, const std::vector<std::string>& names,
                                   const std::vector<std::string>& prefixes) {
    for (const std::string& prefix : prefixes) {
        if (std::find(names.begin(), names.end(), prefix + word) != names.end()) {
            return prefix + word;
        }
    }
    return std::nullopt;
}

std::string procedureFor(const RegisteredModel& model, const std::string& word) {
    const std::string ofParameter = procedurePrefix + std::string(parameterPrefix);
    const std::optional<std::string> procedure =
        nameFor(word, model.procedures(), {"", procedurePrefix, ofParameter});
    if (!procedure) {
        throw UsageError("The model has no procedure \"" + word + "\". Its procedures are " +
                         boost::algorithm::join(model.procedures(), ", ") + ".");
    }
    return *procedure;
}

std::pair<std::string, std::string> nameAndValue(const std::string& word) {
    const std::size_t sign = word.find('=');
    if (sign == std::string::npos || sign == 0) {
        throw UsageError("\"" + word +
                         "\" does not have the form name=value, for example TX_LINE_RATE=10.3125.");
    }
    return {word.substr(0, sign), word.substr(sign + 1)};
}

Values emptyValues(const std::vector<std::string>& parameters) {
    Values values;
    for (const std::string& parameter : parameters) {
        values[parameter] = "";
    }
    return values;
}

/// Parameters of the edit that hold no number where the procedure takes one.
std::vector<std::string> faultyNumbers(const RegisteredModel& model, const ParameterEdit& edit) {
    std::vector<std::string> faulty;
    const std::vector<std::string> parameters = model.parametersOf(edit.procedure);
    for (const std::string& parameter : parameters) {
        // Procedures read all their numbers first, and an empty one is no fault.
        Values alone = emptyValues(parameters);
        alone[parameter] = edit.values.at(parameter);
        try {
            model.evaluate(edit.procedure, alone);
        } catch (const boost::bad_lexical_cast&) {
            faulty.push_back(parameter + " is \"" + alone[parameter] + "\"");
        }
    }
    return faulty;
}

}  // namespace

ParameterEdit parameterEdit(const RegisteredModel& model, const std::string& procedureWord,
                            const std::vector<std::string>& valueWords) {
    ParameterEdit edit;
    edit.procedure = procedureFor(model, procedureWord);
    const std::vector<std::string> parameters = model.parametersOf(edit.procedure);
    Values given;
    for (const std::string& word : valueWords) {
        const auto& [name, value] = nameAndValue(word);
        const std::optional<std::string> parameter =
            nameFor(name, parameters, {"", parameterPrefix});
        if (!parameter) {
            edit.foreignParameters.push_back(name);
        }
        if (!given.emplace(parameter.value_or(name), value).second) {
            throw UsageError(parameter.value_or(name) + " is given twice.");
        }
    }
    edit.values = given;
    edit.values.merge(emptyValues(parameters));
    return edit;
}

updater evaluated(const RegisteredModel& model, const ParameterEdit& edit) {
    try {
        return model.evaluate(edit.procedure, edit.values);
    } catch (const boost::bad_lexical_cast&) {
        throw UsageError("The procedure takes a number where " +
                         boost::algorithm::join(faultyNumbers(model, edit), " and ") + ".");
    }
}

std::string parameterOfProcedure(const std::string& procedure) {
    return boost::algorithm::starts_with(procedure, procedurePrefix)
               ? procedure.substr(std::string(procedurePrefix).size())
               : procedure;
}

}  // namespace sable_lanecfg::tool
