#pragma once

#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// How bad a finding about a database is.
enum class FindingLevel {
    error,    ///< a request on this database can fail or give a wrong answer
    warning,  ///< probably not meant so
    note,     ///< worth knowing
};

/// Word of a level, for example "error".
const char* wordOf(FindingLevel level);

/// One thing found in a database.
struct Finding {
    FindingLevel level;
    std::string file;  ///< "registers.json", "parameters.json" or "device.json"
    std::string key;   ///< register, field, parameter or entry; empty for the whole file
    std::string text;
};

/// The findings as people read them: where more than five notes say the same of a file's keys, one
/// note stands in the place of the first, with the first keys and the count. Errors and warnings
/// stay as they are.
std::vector<Finding> withAlikeNotesJoined(const std::vector<Finding>& findings);

/// Collects the findings about one file.
class FindingList {
  public:
    FindingList(std::string file, std::vector<Finding>& findings);

    void error(const std::string& key, const std::string& text);
    void warning(const std::string& key, const std::string& text);
    void note(const std::string& key, const std::string& text);

  private:
    void add(FindingLevel level, const std::string& key, const std::string& text);

    std::string file_;
    std::vector<Finding>& findings_;
};

}  // namespace sable_lanecfg::tool
