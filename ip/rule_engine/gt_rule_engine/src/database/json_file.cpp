#include "database/json_file.h"

#include "database/fault_report.h"
#include "database/nesting_limit.h"
#include "database/parse_json.h"

#include <lanecfg/host/strmio_iostreams.h>

#include <exception>

namespace sable_lanecfg {

template <class Tree>
Tree readJsonFile(const std::string& file) {
    Tree tree;
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

template boost::property_tree::ptree readJsonFile(const std::string& file);
template json_value readJsonFile(const std::string& file);

}  // namespace sable_lanecfg
