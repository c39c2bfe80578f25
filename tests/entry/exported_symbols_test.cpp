#include "support/run_program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

using testing::IsEmpty;

namespace {

/// A symbol that the library shows to the dynamic linker.
struct ExportedSymbol {
    std::string name;
    char type;  ///< the letter of nm
};

std::vector<ExportedSymbol> exportedSymbols() {
    lanecfg_test::ProgramStart start;
    start.arguments = {"-D", "--defined-only", LANECFG_LIBRARY};
    const lanecfg_test::ProgramResult listing = lanecfg_test::runProgram(LANECFG_NM, start);
    EXPECT_EQ(listing.exitCode, 0) << listing.errors;
    std::vector<ExportedSymbol> symbols;
    std::istringstream lines(listing.output);
    std::string address;
    ExportedSymbol symbol{};
    while (lines >> address >> symbol.type >> symbol.name) {
        symbols.push_back(symbol);
    }
    return symbols;
}

bool isWeak(const ExportedSymbol& symbol) {
    return std::string("VWvw").find(symbol.type) != std::string::npos;
}

/// Whether a mangled name belongs to the standard library or to Boost: a function or variable of
/// theirs, what is local to one, or a table that the compiler makes for a class.
bool isOfAnotherLibrary(const std::string& mangledName) {
    static const std::regex pattern(
        "_Z(T[VISTC]|GV|GR)*Z*N?[VKrRO]*(S[tabsiod]|5boost|9__gnu_cxx|10__cxxabiv1).*");
    return std::regex_match(mangledName, pattern);
}

TEST(MangledNames, TellTheStandardLibraryAndBoostFromTheRest) {
    for (const char* const name :
         {"_ZNSt6vectorIiSaIiEE9push_backEOi", "_ZNKSt6vectorIiSaIiEE4sizeEv",
          "_ZSt4swapIiEvRT_S1_", "_ZTVN5boost7bad_getE", "_ZTINSt6thread6_StateE",
          "_ZZNSt8__detail18__to_chars_10_implIjEEvPcjT_E8__digits", "_ZGVN5boost4noneE",
          "_ZN9__gnu_cxx12__to_xstringIiEEv", "_ZNSsC1Ev"}) {
        EXPECT_TRUE(isOfAnotherLibrary(name)) << name;
    }
    for (const char* const name :
         {"Hostx_rule_engine_Init", "_ZN13sable_lanecfg15lane_cfg_ip_mgr11releaseDataERKSs",
          "_ZTV14ToolGTDRCModel", "_ZN14RuleEngineInit4initEv"}) {
        EXPECT_FALSE(isOfAnotherLibrary(name)) << name;
    }
}

TEST(ExportedSymbols, HaveTheEntryUndecorated) {
    const std::vector<ExportedSymbol> symbols = exportedSymbols();
    const auto entry = std::find_if(
        symbols.begin(), symbols.end(),
        [](const ExportedSymbol& symbol) { return symbol.name == "Hostx_rule_engine_Init"; });
    ASSERT_NE(entry, symbols.end());
    EXPECT_EQ(entry->type, 'T');
}

TEST(ExportedSymbols, OfOtherLibrariesAreAllWeak) {
    const std::vector<ExportedSymbol> symbols = exportedSymbols();
    ASSERT_FALSE(symbols.empty());
    std::vector<std::string> strong;
    for (const ExportedSymbol& symbol : symbols) {
        if (isOfAnotherLibrary(symbol.name) && !isWeak(symbol)) {
            strong.push_back(symbol.name);
        }
    }
    EXPECT_THAT(strong, IsEmpty());
}

}  // namespace
