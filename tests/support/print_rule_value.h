#pragma once

#include <lanecfg/rule_engine_base.h>

#include <boost/optional/optional_io.hpp>
#include <gtest/gtest.h>

#include <ostream>

// GoogleTest looks for printers beside the type; a variant's own stream operator can't print a
// list or a blank.
namespace boost {

inline void PrintTo(const sable_lanecfg::ruleValue& value, std::ostream* output) {
    boost::apply_visitor([output](const auto& held) { *output << ::testing::PrintToString(held); },
                         value);
}

}  // namespace boost
