#include "errors.h"

#include <boost/variant/get.hpp>

#include <exception>
#include <new>
#include <string>

namespace sable_lanecfg::tool {

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
    } catch (const std::exception& error) {
        return error.what();
    } catch (...) {
        return "An exception of an unknown kind was thrown.";
    }
}

}  // namespace sable_lanecfg::tool
