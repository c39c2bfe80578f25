#include "database/json_file.h"

#include "database/fault_report.h"
#include "database/nesting_limit.h"
#include "database/parse_json.h"

#include <lanecfg/host/strmio_iostreams.h>

#include <exception>

namespace sable_lanecfg {

boost::property_tree::ptree readJsonFile(const std::string& file) {
    boost::property_tree::ptree tree;
    try {
        strmio::iostreams::filtering_stream<boost::iostreams::input> stream;
        stream.push(nesting_limit());
        stream.push(strmio::iostreams::xp_autodetect(file));
        parseJson(stream, tree);
    } catch (const std::exception&) {
        reportParseError(file);
    }
    return tree;
}

}  // namespace sable_lanecfg
