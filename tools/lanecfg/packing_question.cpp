#include "packing_question.h"

#include "errors.h"
#include "loaded_request.h"
#include "request_checks.h"

namespace sable_lanecfg::tool {
namespace {

gt_quad_packing packingOf(const Request& request, const Database& database) {
    try {
        const gt_db_load loaded = loadRequest(request, database);
        if (loaded.m_loaded) {
            return {loaded.m_channelUsage, loaded.m_paramTypes, loaded.m_userParams,
                    loaded.m_fields, loaded.m_deviceData};
        }
    } catch (...) {
        throw RequestError("Request " + request.file + " failed on the database " +
                           database.folder.string() + ": " + currentExceptionText());
    }
    throwUnusableParameters(request, database);
}

}  // namespace

PackingQuestion askForPacking(const Request& request, const Database& database, Console& console) {
    if (!request.rules->isPacked) {
        throw RequestError("Request " + request.file + ": There is no packing for " +
                           request.rules->family +
                           ": its channels have one PLL, and nothing is left to choose.");
    }
    tellOfDoubts(request, database, console);
    console.progress("Packing the channels of " + request.file);
    const int errorsBeforeLoading = console.errorCount();
    PackingQuestion question{packingOf(request, database), {}};
    const int errorsBefore = console.errorCount();
    question.messages = question.packing.canBePacked(true);
    console.endProgress();
    if (console.errorCount() > errorsBefore) {
        throw RequestError("Request " + request.file +
                           " can't be judged; the messages before this one tell why. Each rate in "
                           "use needs its parameters, each lane its rate pin, and " +
                           database.deviceFile() + " its PLL limits.");
    }
    tellOfErrors(request, database, console, errorsBeforeLoading);
    return question;
}

}  // namespace sable_lanecfg::tool
