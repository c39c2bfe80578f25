#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace lanecfg_test {

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

}  // namespace lanecfg_test
