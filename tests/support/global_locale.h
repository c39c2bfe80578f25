#pragma once

#include <locale>

namespace lanecfg_test {

/// Sets the global locale for its life.
class GlobalLocale {
  public:
    explicit GlobalLocale(const std::locale& locale) : previous_(std::locale::global(locale)) {}
    ~GlobalLocale() { std::locale::global(previous_); }
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;

  private:
    std::locale previous_;
};

}  // namespace lanecfg_test
