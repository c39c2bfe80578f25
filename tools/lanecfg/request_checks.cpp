#include "request_checks.h"

#include "errors.h"
#include "json_document.h"
#include "loaded_request.h"
#include "message_capture.h"
#include "parameter_doubts.h"
#include "request_dictionaries.h"
#include "user_parameter_fault.h"

namespace sable_lanecfg::tool {
namespace {

/// The library goes on without a file that it can't read, and tells neither place nor reason.
void requireObject(const std::string& file) {
    if (!readJsonDocument(file, Lists::abridged).root.is_object()) {
        throw RequestError("Error in parsing the file " + file +
                           ". A file of a database is a JSON object; lanecfg check-database tells "
                           "what it holds.");
    }
}

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
    console.warning(text +
                    " What can't be read of a value counts as 0 or false, and a whole number below "
                    "0 wraps around.");
}

void warnOfMissingPart(const Request& request, Console& console) {
    if (request.isDictionaryForm && request.part.empty()) {
        console.warning("Request " + request.file +
                        " has no part name: the silicon revision is "
                        "empty, and lanes are taken in the order of their keys. Give --part or "
                        "the key \"part\".");
    }
}

void warnOf(const std::vector<std::string>& doubts, const Request& request, Console& console) {
    for (const std::string& doubt : doubts) {
        console.warning("Request " + request.file + ": " + doubt);
    }
}

/// Doubts about values. They are looked for before the run, since some of the values end it.
std::vector<std::string> doubtsOfValues(const Request& request, const Database& database) {
    // What can't be loaded is told by the run, which loads it once more.
    const MessageCapture unheard;
    try {
        const gt_db_load loaded = loadRequest(request, database);
        return parameterDoubts(loaded.m_channelUsage, loaded.m_userParams);
    } catch (...) {
        return {};
    }
}

}  // namespace

void tellOfDoubts(const Request& request, const Database& database, Console& console) {
    for (const std::string& file : database.files()) {
        requireObject(file);
    }
    tellOfMisreadValue(request, database, console);
    warnOf(doubtsOf(request.dictionaries.laneUsage), request, console);
    warnOf(doubtsOf(request.dictionaries.userParams), request, console);
    warnOfMissingPart(request, console);
    warnOf(doubtsOfValues(request, database), request, console);
}

void tellOfErrors(const Request& request, const Database& database, Console& console,
                  int errorsBefore) {
    if (console.errorCount() > errorsBefore) {
        console.error("Request " + request.file + " on the database " + database.folder.string() +
                      ": don't rely on the answer before what the messages above name is mended. "
                      "lanecfg check-database tells whether the database is at fault.");
    }
}

void throwUnusableParameters(const Request& request, const Database& database) {
    const std::string fault = userParameterFault(request, database.parametersFile());
    if (!fault.empty()) {
        throw RequestError("Request " + request.file + " can't be loaded: " + fault);
    }
    throw RequestError("Request " + request.file +
                       " can't be loaded; the messages before this "
                       "one tell why. Its parameters must be declared in " +
                       database.parametersFile() + ", with values of their types.");
}

}  // namespace sable_lanecfg::tool
