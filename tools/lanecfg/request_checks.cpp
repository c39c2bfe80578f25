#include "request_checks.h"

#include "errors.h"
#include "request_dictionaries.h"
#include "user_parameter_fault.h"

namespace sable_lanecfg::tool {
namespace {

/// The library would answer something else than what was asked for.
void tellOfMisreadValue(const Request& request, const Database& database, Console& console) {
    const std::string fault = misreadValue(request, database.parametersFile());
    if (fault.empty()) {
        return;
    }
    const std::string text = "Request " + request.file + ": " + fault;
    if (!request.isDictionaryForm) {
        throw RequestError(text);
    }
    // Hosts hand over any text, and the library goes on with what it can read of it.
    console.warning(text + " What can't be read of a value counts as 0 or false.");
}

void warnOfMissingPart(const Request& request, Console& console) {
    if (request.isDictionaryForm && request.part.empty()) {
        console.warning("Request " + request.file +
                        " has no part name: the silicon revision is "
                        "empty, and lanes are taken in the order of their keys. Give --part or "
                        "the key \"part\".");
    }
}

void warnOfDoubts(const Request& request, Console& console) {
    for (const std::string& doubt : doubtsOf(request.dictionaries.userParams)) {
        console.warning("Request " + request.file + ": " + doubt);
    }
}

}  // namespace

void tellOfDoubts(const Request& request, const Database& database, Console& console) {
    tellOfMisreadValue(request, database, console);
    warnOfDoubts(request, console);
    warnOfMissingPart(request, console);
}

void throwUnusableParameters(const Request& request, const Database& database) {
    const std::string fault = userParameterFault(request, database.parametersFile());
    if (!fault.empty()) {
        throw RequestError("Request " + request.file + " can't be loaded: " + fault);
    }
    throw RequestError("Request " + request.file +
                       " can't be loaded; the messages before this "
                       "one tell why. Its parameters must be declared in the database's "
                       "parameters.json, with values of their types.");
}

}  // namespace sable_lanecfg::tool
