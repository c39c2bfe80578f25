#pragma once

#include "console.h"
#include "database.h"
#include "request.h"

namespace sable_lanecfg::tool {

/// Tells of what is probably not meant so in a request, before the library gets it. Throws
/// RequestError for a value that the library would take for something else, and for a file of the
/// database that can't be read.
void tellOfDoubts(const Request& request, const Database& database, Console& console);

/// Tells, behind an answer, that the library reported errors while it was made: those that the
/// console has counted beyond `errorsBefore`.
void tellOfErrors(const Request& request, const Database& database, Console& console,
                  int errorsBefore);

/// The failure of a request whose user parameters the library refuses; names the first one at
/// fault where it can be found.
[[noreturn]] void throwUnusableParameters(const Request& request, const Database& database);

}  // namespace sable_lanecfg::tool
