#pragma once

#include "support/captured_messages.h"

#include <lanecfg/rule_engine_any.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lanecfg_test {

inline rule_engine_any sequenceOf(const std::vector<rule_engine_any>& elements) {
    rule_engine_any sequence;
    for (const rule_engine_any& element : elements) {
        sequence << element;
    }
    return sequence;
}

inline rule_engine_any emptySequence() {
    rule_engine_any sequence = sequenceOf({1});
    sequence.seq().clear();
    return sequence;
}

inline rule_engine_any mapOf(const std::string& key, const rule_engine_any& member) {
    rule_engine_any map;
    map[key] = member;
    return map;
}

inline std::vector<rule_engine_any> oneOfEachScalar() {
    return {rule_engine_any(), 3U, -3, "text", true, 1.5};
}

inline std::vector<rule_engine_any> oneOfEachType() {
    std::vector<rule_engine_any> values = oneOfEachScalar();
    values.push_back(sequenceOf({1, 2}));
    values.push_back(mapOf("key", 1));
    return values;
}

/// Every test catches the messages, so that a test without a failure can say there was none.
class DynamicValueTest : public testing::Test {
  protected:
    lanecfg_test::CapturedMessages messages_;
};

}  // namespace lanecfg_test
