#pragma once

#include "database.h"
#include "output.h"
#include "request.h"

namespace sable_lanecfg::tool {

/// A request and the database of its rules.
struct RequestInputs {
    /// Reads the request and finds the database. Throws what `readRequest` and `findDatabase`
    /// throw, and UsageError when the file for the answer is one of theirs.
    RequestInputs(const RequestOptions& options, const OutputOptions& output);

    Request request;
    Database database;
};

}  // namespace sable_lanecfg::tool
