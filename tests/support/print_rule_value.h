#pragma once

#include <lanecfg/rule_engine_base.h>

#include <boost/optional/optional_io.hpp>
#include <gtest/gtest.h>

#include <ostream>

// GoogleTest looks for printers beside the type; a variant's own stream operator can't print a
// list or a blank.
namespace boost {

template <class... Types>
void PrintTo(const boost::variant<Types...>& value, std::ostream* output) {
    boost::apply_visitor([output](const auto& held) { *output << ::testing::PrintToString(held); },
                         value);
}

}  // namespace boost
