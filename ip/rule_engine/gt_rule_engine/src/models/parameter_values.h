#pragma once

#include <lanecfg/host/ToolDRCModel.h>

#include <boost/lexical_cast.hpp>

#include <string>

/// Access to the values of a record by the bare names of the parameters.
namespace sable_lanecfg::models {

/// Key of a parameter in the values of a record.
std::string valueKey(const std::string& parameter);

/// The text of a value, empty when it is missing.
std::string textOf(const updater& record, const std::string& parameter);

/// True exactly for the text "true".
bool isTrue(const updater& record, const std::string& parameter);

/// The value as a number, `fallback` when it is missing or empty. Throws `boost::bad_lexical_cast`
/// for a text that is no number, or none that a `Number` can hold.
template <class Number>
Number numberOf(const updater& record, const std::string& parameter, Number fallback) {
    const std::string text = textOf(record, parameter);
    return text.empty() ? fallback : boost::lexical_cast<Number>(text);
}

/// Changes a value that is there; one that is missing stays so.
void setValue(updater& record, const std::string& parameter, const std::string& text);

/// Writes "true" or "false".
void setFlag(updater& record, const std::string& parameter, bool flag);

}  // namespace sable_lanecfg::models
