#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace sable_lanecfg::tool {

/// JSON whose members keep the order in which they were entered.
using Json = nlohmann::ordered_json;

/// One cell: its text for people and CSV, its value for JSON.
struct Cell {
    explicit Cell(Json cellValue);
    Cell(std::string cellText, Json cellValue);
    /// One whose text for people is rounded, or stands for no value.
    Cell(std::string cellText, std::string cellExactText, Json cellValue);

    std::string text;
    std::optional<std::string> exactText;  ///< for CSV, the text for people unless given
    Json value;
};

/// Rows under named columns, the form of every answer of the program.
struct Table {
    std::vector<std::string> columns;
    std::vector<std::vector<Cell>> rows;
    bool hasHeading = true;  ///< whether the aligned form begins with the column names
};

/// Columns in line, numbers to the right; control characters are shown escaped.
std::string alignedText(const Table& table);
/// The table with long texts cut for people, their length behind what is left. The last column
/// keeps its texts, since they push no other column apart.
Table withShortTexts(Table table);
/// Comma separated values as RFC 4180 has them, with line feeds as line ends.
std::string csvText(const Table& table);
/// JSON list with a line for each row, an object with the column names as keys.
std::string jsonText(const Table& table);
/// The rows as a JSON list of objects.
Json rowObjects(const Table& table);
/// JSON on one line, or, given an indent, with each level on lines of its own behind as many blanks
/// more; bytes that are no UTF-8 are replaced.
std::string jsonText(const Json& document, std::optional<unsigned> indent = std::nullopt);

}  // namespace sable_lanecfg::tool
