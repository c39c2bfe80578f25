#include "table.h"

#include <boost/algorithm/string/join.hpp>

#include <algorithm>
#include <cctype>
#include <utility>

namespace sable_lanecfg::tool {
namespace {

constexpr const char* columnGap = "  ";
constexpr std::size_t longestText = 48;
constexpr std::size_t lengthWhenCut = 24;

std::string textOf(const Json& value) {
    if (value.is_string()) {
        return value.get<std::string>();
    }
    return value.is_null() ? std::string() : jsonText(value);
}

bool hasControlCharacter(const std::string& text) {
    return std::any_of(text.begin(), text.end(),
                       [](unsigned char character) { return std::iscntrl(character) != 0; });
}

/// A cell of the aligned form, which has to stay on one line.
std::string onOneLine(const std::string& text) {
    if (!hasControlCharacter(text)) {
        return text;
    }
    const std::string quoted = jsonText(text);
    return quoted.substr(1, quoted.size() - 2);
}

std::string upperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char character) {
        return static_cast<char>(std::toupper(character));
    });
    return text;
}

/// The beginning of a text, without a part of a character of several bytes.
std::string cutText(const std::string& text) {
    const auto isInsideOfCharacter = [&text](std::size_t index) {
        return (static_cast<unsigned char>(text[index]) & 0xC0U) == 0x80U;
    };
    std::size_t length = lengthWhenCut;
    while (length > 0 && isInsideOfCharacter(length)) {
        --length;
    }
    return text.substr(0, length) + "... (" + std::to_string(text.size()) + " characters)";
}

struct AlignedCell {
    std::string text;
    bool isNumber;
};
using AlignedRow = std::vector<AlignedCell>;

std::vector<AlignedRow> alignedRows(const Table& table) {
    std::vector<AlignedRow> result;
    for (const std::vector<Cell>& row : table.rows) {
        AlignedRow& added = result.emplace_back();
        for (const Cell& cell : row) {
            added.push_back({onOneLine(cell.text), cell.value.is_number()});
        }
    }
    if (table.hasHeading) {
        AlignedRow heading;
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            // A heading stands where the cells below it stand.
            const bool isNumber = !result.empty() && result.front()[column].isNumber;
            heading.push_back({upperCase(table.columns[column]), isNumber});
        }
        result.insert(result.begin(), std::move(heading));
    }
    return result;
}

std::vector<std::size_t> columnWidths(const std::vector<AlignedRow>& rows, std::size_t columns) {
    std::vector<std::size_t> widths(columns, 0);
    for (const AlignedRow& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths[column] = std::max(widths[column], row[column].text.size());
        }
    }
    return widths;
}

std::string alignedLine(const AlignedRow& row, const std::vector<std::size_t>& widths) {
    std::string line;
    for (std::size_t column = 0; column < row.size(); ++column) {
        const AlignedCell& cell = row[column];
        const std::string padding(widths[column] - cell.text.size(), ' ');
        line += column == 0 ? "" : columnGap;
        line += cell.isNumber ? padding + cell.text : cell.text + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + '\n';
}

std::string csvField(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char character : text) {
        quoted += character == '"' ? "\"\"" : std::string(1, character);
    }
    return quoted + '"';
}

std::string csvLine(const std::vector<std::string>& fields) {
    std::vector<std::string> quoted;
    for (const std::string& field : fields) {
        quoted.push_back(csvField(field));
    }
    std::string line = boost::algorithm::join(quoted, ",");
    // Readers take an empty line for none at all.
    return (line.empty() ? "\"\"" : line) + '\n';
}

Json jsonRow(const Table& table, const std::vector<Cell>& row) {
    Json entry = Json::object();
    for (std::size_t column = 0; column < row.size(); ++column) {
        entry[table.columns[column]] = row[column].value;
    }
    return entry;
}

}  // namespace

Cell::Cell(Json cellValue) : text(textOf(cellValue)), value(std::move(cellValue)) {}

Cell::Cell(std::string cellText, Json cellValue)
    : text(std::move(cellText)), value(std::move(cellValue)) {}

Cell::Cell(std::string cellText, std::string cellExactText, Json cellValue)
    : text(std::move(cellText)), exactText(std::move(cellExactText)), value(std::move(cellValue)) {}

std::string alignedText(const Table& table) {
    const std::vector<AlignedRow> rows = alignedRows(table);
    const std::vector<std::size_t> widths = columnWidths(rows, table.columns.size());
    std::string result;
    for (const AlignedRow& row : rows) {
        result += alignedLine(row, widths);
    }
    return result;
}

Table withShortTexts(Table table) {
    for (std::vector<Cell>& row : table.rows) {
        for (std::size_t column = 0; column + 1 < row.size(); ++column) {
            std::string& text = row[column].text;
            if (text.size() > longestText) {
                text = cutText(text);
            }
        }
    }
    return table;
}

std::string csvText(const Table& table) {
    std::string result = csvLine(table.columns);
    for (const std::vector<Cell>& row : table.rows) {
        std::vector<std::string> fields;
        for (const Cell& cell : row) {
            fields.push_back(cell.exactText.value_or(cell.text));
        }
        result += csvLine(fields);
    }
    return result;
}

std::string jsonText(const Table& table) {
    std::string result = "[";
    for (const std::vector<Cell>& row : table.rows) {
        result += (result.size() == 1 ? "\n  " : ",\n  ") + jsonText(jsonRow(table, row));
    }
    return result + (table.rows.empty() ? "]\n" : "\n]\n");
}

Json rowObjects(const Table& table) {
    Json objects = Json::array();
    for (const std::vector<Cell>& row : table.rows) {
        objects.push_back(jsonRow(table, row));
    }
    return objects;
}

std::string jsonText(const Json& document, std::optional<unsigned> indent) {
    const int width = indent ? static_cast<int>(*indent) : -1;  // -1 is one line
    return document.dump(width, ' ', false, Json::error_handler_t::replace);
}

}  // namespace sable_lanecfg::tool
