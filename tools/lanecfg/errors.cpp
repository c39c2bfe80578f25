#include "errors.h"

#include <boost/variant/get.hpp>

#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>

namespace sable_lanecfg::tool {
namespace {

/// What a conversion of the standard library has tried in vain, by the name that is all it tells.
struct Conversion {
    const char* name;
    const char* meaning;
};

constexpr std::array<Conversion, 2> conversions = {{
    {"stoul", "A register of the database has an offset that is no hexadecimal number"},
    {"stod", "A limit in the database's device.json is missing or no number"},
}};

std::string textOf(const std::logic_error& error) {
    const std::string text = error.what();
    const auto* const found =
        std::find_if(conversions.begin(), conversions.end(),
                     [&text](const Conversion& row) { return text == row.name; });
    return found == conversions.end()
               ? text
               : std::string(found->meaning) + "; lanecfg check-database tells which.";
}

}  // namespace

std::string currentExceptionText() {
    try {
        throw;
    } catch (const std::string& variableName) {
        return "A rule reads the variable \"" + variableName +
               "\", which has no value. Give it in the request, or declare it in the parameter "
               "types file with a default.";
    } catch (const boost::bad_get& error) {
        // Who knows which value it is has a text of its own.
        const std::string text = error.what();
        if (text != boost::bad_get().what()) {
            return text;
        }
        return "A rule or register found a value of another type than it takes. lanecfg "
               "check-database tells whether the database is at fault; else look for a user "
               "parameter whose type differs in the parameter types file.";
    } catch (const std::bad_alloc&) {
        return "There is not enough memory for this request.";
    } catch (const std::filesystem::filesystem_error& error) {
        return "The path " + error.path1().string() +
               " can't be followed: " + error.code().message() + ".";
    } catch (const std::domain_error& error) {
        return std::string(error.what()) +
               ". Look for a line rate, a clock or a width of the request that is 0, missing or "
               "far "
               "from what the family runs at.";
    } catch (const std::logic_error& error) {
        return textOf(error);
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "An exception of an unknown kind was thrown.";
    }
}

}  // namespace sable_lanecfg::tool
