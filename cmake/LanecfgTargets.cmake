# What every target of the project shares: language level, warnings, exact floating point,
# sanitizers and coverage.
add_library(lanecfg_options INTERFACE)
target_compile_features(lanecfg_options INTERFACE cxx_std_17)
# Results are compared bit for bit, so no product and sum may be fused.
target_compile_options(lanecfg_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror -ffp-contract=off)

if(LANECFG_SANITIZE)
    # GCC's flow analysis loses track in instrumented code and warns of Boost's optional and variant.
    target_compile_options(lanecfg_options INTERFACE
        -fsanitize=${LANECFG_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(lanecfg_options INTERFACE -fsanitize=${LANECFG_SANITIZE})
endif()
if(LANECFG_COVERAGE)
    target_compile_options(lanecfg_options INTERFACE --coverage -fno-inline)
    target_link_options(lanecfg_options INTERFACE --coverage)
endif()

# What the library keeps on purpose is no leak.
set(lanecfg_test_environment
    "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/leak_suppressions.txt:print_suppressions=0")

# lanecfg_add_test(NAME SOURCES... LIBRARIES...): one GoogleTest program, its cases known to CTest.
function(lanecfg_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE
        lanecfg_test_options lanecfg_test_support ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
    # What nearly every test includes is parsed once.
    target_precompile_headers(${name} REUSE_FROM lanecfg_test_headers)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${name}."
        PROPERTIES
            TIMEOUT 120
            ENVIRONMENT "${lanecfg_test_environment}")
endfunction()
