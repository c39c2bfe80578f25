#include "output.h"

#include "errors.h"
#include "option_value.h"
#include "output_file.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <system_error>

namespace sable_lanecfg::tool {
namespace {

constexpr unsigned jsonIndent = 2;

std::string textForm(const Answer& answer) {
    std::string result;
    // An empty table says nothing beside a remark.
    if (answer.text) {
        result = *answer.text;
    } else if (!answer.table.rows.empty() || answer.remarks.empty()) {
        result = alignedText(answer.table);
    }
    for (const std::string& remark : answer.remarks) {
        result += remark + '\n';
    }
    return result;
}

std::string jsonForm(const Answer& answer) {
    return answer.document ? jsonText(*answer.document, jsonIndent) + '\n' : jsonText(answer.table);
}

std::string rendered(const Answer& answer, const std::string& format) {
    if (format == "json") {
        return jsonForm(answer);
    }
    return format == "csv" ? csvText(answer.table) : textForm(answer);
}

/// Whether two names lead to one file, be it there or yet to be made.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code missing;
    if (std::filesystem::equivalent(one, other, missing)) {
        return true;
    }
    std::error_code unreadable;
    const std::filesystem::path place = std::filesystem::weakly_canonical(one, unreadable);
    return !unreadable && place == std::filesystem::weakly_canonical(other, unreadable) &&
           !unreadable;
}

}  // namespace

void addOutputOptions(CLI::App& command, OutputOptions& options) {
    command.add_option("--format", options.format, "Form of the answer")
        ->check(CLI::IsMember({"text", "json", "csv"}))
        ->capture_default_str();
    command
        .add_option("-o,--output", options.file,
                    "Write the answer to this file, whole or not at all")
        ->type_name("FILE")
        ->check(emptyValueFault);
}

void refuseToOverwrite(const std::vector<std::string>& used, const OutputOptions& options) {
    for (const std::string& file : used) {
        if (!options.file.empty() && isSameFile(options.file, file)) {
            throw UsageError("-o names the file " + file +
                             ", which this command uses. Name another file for the answer.");
        }
    }
}

void finishStandardOutput() {
    std::cout.flush();
    if (!std::cout && errno != EPIPE) {
        throw RequestError(
            "Cannot write to standard output: " + std::generic_category().message(errno) +
            ". Is the disk full, or standard output closed?");
    }
}

void nameLastColumnForPeople(Answer& answer, const std::string& name) {
    if (!answer.table.rows.empty()) {
        Table table = answer.table;
        table.columns.back() = name;
        answer.text = alignedText(table);
    }
}

void writeAnswer(const Answer& answer, const OutputOptions& options) {
    const std::string text = rendered(answer, options.format);
    if (!options.file.empty()) {
        writeWholeFile(options.file, text);
        return;
    }
    std::cout << text;
    finishStandardOutput();
}

}  // namespace sable_lanecfg::tool
