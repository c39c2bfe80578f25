#pragma once

#include <gtest/gtest.h>

#include <string>

namespace lanecfg_test {

/// The name that a read reports as undefined; fails the test when the read succeeds.
template <class Read>
std::string undefinedName(Read read) {
    try {
        read();
    } catch (const std::string& name) {
        return name;
    }
    ADD_FAILURE() << "the read succeeded";
    return {};
}

}  // namespace lanecfg_test
