#pragma once

#include <lanecfg/rule_engine_base.h>

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <sstream>
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

/// Takes the place of standard output while it lives.
class CapturedOutput {
  public:
    CapturedOutput() : previous_(std::cout.rdbuf(text_.rdbuf())) {}
    ~CapturedOutput() { std::cout.rdbuf(previous_); }
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;

    std::string text() const { return text_.str(); }

  private:
    std::ostringstream text_;
    std::streambuf* previous_;
};

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
