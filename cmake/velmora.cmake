# What every target of this project shares. No global flags: a target asks for what it needs.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

option(VELMORA_SANITIZE "Build with the address and undefined behaviour sanitizers" OFF)
option(VELMORA_PRECOMPILE "Use precompiled headers (clang-tidy cannot read those of another compiler)" ON)
option(VELMORA_BENCH "Build the benchmarks under tests/bench" OFF)

add_library(velmora_warnings INTERFACE)
target_compile_options(velmora_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
# g++ 12 sees an overlap in every optimised `"text" + std::string` (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(velmora_warnings INTERFACE -Wno-restrict)
endif()

add_library(velmora_sanitize INTERFACE)
if(VELMORA_SANITIZE)
    target_compile_options(velmora_sanitize INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(velmora_sanitize INTERFACE -fsanitize=address,undefined)
endif()

# Qt targets: no silent conversions between bytes and text, no connection that outlives its receiver.
add_library(velmora_qt_rules INTERFACE)
target_compile_definitions(velmora_qt_rules INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CONTEXTLESS_CONNECT QT_NO_KEYWORDS)

# velmora_library(NAME SOURCES file... [LINK target...]): one folder, one library. Headers are included from the root of
# the tree ("base/failure.h"), so that an include says which layer it reaches into.
function(velmora_library name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${ARG_LINK} PRIVATE velmora_warnings velmora_sanitize)
endfunction()

# velmora_executable(NAME SOURCES file... [LINK target...])
function(velmora_executable name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE ${ARG_LINK} velmora_warnings velmora_sanitize)
endfunction()

# velmora_test(NAME LABEL unit|sim|gui|live SOURCES file... [LINK target...] [ENVIRONMENT VAR=value...]): every TEST in
# the sources becomes a test of ctest's, named Suite.Case, with the label.
function(velmora_test name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "LABEL" "SOURCES;LINK;ENVIRONMENT")
    velmora_executable(${name} SOURCES ${ARG_SOURCES} LINK ${ARG_LINK} GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST
        PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT 120
        ENVIRONMENT "${ARG_ENVIRONMENT};LSAN_OPTIONS=suppressions='${CMAKE_SOURCE_DIR}/tests/support/leaks.supp':print_suppressions=0")
endfunction()
