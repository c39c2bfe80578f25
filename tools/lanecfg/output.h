#pragma once

#include "table.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace sable_lanecfg::tool {

/// How and where a subcommand answers.
struct OutputOptions {
    std::string format = "text";  ///< "text", "json" or "csv"
    std::string file;             ///< empty for standard output
};

/// What a subcommand answers.
struct Answer {
    Table table;
    std::optional<Json> document;      ///< JSON form, the rows of the table unless given
    std::optional<std::string> text;   ///< form for people, the aligned table unless given
    std::vector<std::string> remarks;  ///< lines that end the form for people
};

/// Gives a subcommand the options --format and -o.
void addOutputOptions(CLI::App& command, OutputOptions& options);

/// Throws UsageError when the file for the answer is one of these, which the command uses, whether
/// they exist or not.
void refuseToOverwrite(const std::vector<std::string>& used, const OutputOptions& options);

/// Brings what was written to standard output on its way. Throws RequestError when that can't be
/// done; a reader that has ended has all it wanted.
void finishStandardOutput();

/// Shows people the answer's table, unless it is empty, with another name for its last column, such
/// as one with the unit. CSV keeps the table's.
void nameLastColumnForPeople(Answer& answer, const std::string& name);

/// Writes the answer where the options want it. Throws RequestError when that can't be done.
void writeAnswer(const Answer& answer, const OutputOptions& options);

}  // namespace sable_lanecfg::tool
