#include "request_inputs.h"

namespace sable_lanecfg::tool {

RequestInputs::RequestInputs(const RequestOptions& options, const OutputOptions& output)
    : request(readRequest(options)),
      database(findDatabase(chooseDatabaseRoot(options.database), *request.rules)) {
    refuseToOverwrite({request.file}, output);
    refuseToOverwrite(database.files(), output);
}

}  // namespace sable_lanecfg::tool
