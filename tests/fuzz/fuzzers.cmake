# The fuzzers, and a short run of each as a test. Inputs that matter lie in corpus/NAME: what a run ever finds is added
# there.
include(ExternalProject)

find_program(VELMORA_CLANG clang++)
mark_as_advanced(VELMORA_CLANG)
if(NOT VELMORA_CLANG)
    message(STATUS "No clang++: the fuzzers are left out")
    return()
endif()

set(fuzz_folder ${CMAKE_BINARY_DIR}/tests/fuzz)
ExternalProject_Add(fuzzers
    SOURCE_DIR ${CMAKE_SOURCE_DIR}/tests/fuzz
    BINARY_DIR ${fuzz_folder}
    CMAKE_ARGS
        -DCMAKE_CXX_COMPILER=${VELMORA_CLANG}
        -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
    BUILD_ALWAYS TRUE
    INSTALL_COMMAND ""
    EXCLUDE_FROM_ALL TRUE)

add_test(NAME Fuzz.build COMMAND ${CMAKE_COMMAND} --build ${CMAKE_BINARY_DIR} --target fuzzers)
set_tests_properties(Fuzz.build PROPERTIES LABELS live TIMEOUT 900 FIXTURES_SETUP fuzzers)

foreach(name mail_session message mime_text)
    file(MAKE_DIRECTORY ${fuzz_folder}/found/${name})
    add_test(NAME Fuzz.${name}
        COMMAND ${fuzz_folder}/fuzz_${name} -max_total_time=5 -seed=1 -rss_limit_mb=1024
            -artifact_prefix=${fuzz_folder}/found/${name}- ${fuzz_folder}/found/${name}
            ${CMAKE_SOURCE_DIR}/tests/fuzz/corpus/${name})
    set_tests_properties(Fuzz.${name} PROPERTIES LABELS live TIMEOUT 120 FIXTURES_REQUIRED fuzzers
        ENVIRONMENT ASAN_OPTIONS=detect_leaks=1)
endforeach()
