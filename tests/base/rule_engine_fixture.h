#pragma once

#include <lanecfg/rule_engine_base.h>

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace lanecfg_test {

/// An engine that separates passes as the block model does.
class PassEngine : public sable_lanecfg::rule_engine_base {
  public:
    void flip() { passFlag = !passFlag; }

    void runNextPass() {
        flip();
        runRules();
    }
};

/// An engine whose rules note in `ran` that they ran.
class RuleEngineFixture : public testing::Test {
  protected:
    std::function<void()> noting(const std::string& word) {
        return [this, word] { ran.push_back(word); };
    }

    unsigned long vertexCount() {
        // A name that only a map subscript made has no vertex; it is answered with their number.
        engine.varMap["no vertex"];
        return engine.addVertex("no vertex", sable_lanecfg::varInfo());
    }

    int valueIndex(const std::string& name) { return engine.varMap.at(name).value.which(); }

    PassEngine engine;
    std::vector<std::string> ran;
};

}  // namespace lanecfg_test
