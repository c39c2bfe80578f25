#pragma once

#include "registered_model.h"

#include <map>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// An edit of parameters, and the procedure that is asked what follows from it.
struct ParameterEdit {
    std::string procedure;
    std::map<std::string, std::string> values;   ///< all parameters of the procedure, and the given
    std::vector<std::string> foreignParameters;  ///< given ones that the procedure does not take
};

/// Makes the edit from the words of a user. The procedure may be given by its full name or by its
/// parameter, with or without the prefix PARAM_VALUE., and so may the names in the words
/// "name=value". A parameter that is not given is empty.
/// Throws UsageError when the model has no such procedure, a word has another form, or a parameter
/// is given twice.
ParameterEdit parameterEdit(const RegisteredModel& model, const std::string& procedureWord,
                            const std::vector<std::string>& valueWords);

/// What follows from the edit. Throws UsageError, naming the parameters, when the procedure takes
/// a number and the edit has none.
updater evaluated(const RegisteredModel& model, const ParameterEdit& edit);

/// Name of the parameter whose update procedure it is.
std::string parameterOfProcedure(const std::string& procedure);

}  // namespace sable_lanecfg::tool
