# zanfcp_floor(SOURCES a.cpp … HEADERS a.h …)
# Adds one folder's sources to the library and installs its public headers under include/zanfcp/<folder>.
function(zanfcp_floor)
    cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS" ${ARGN})
    list(TRANSFORM ARG_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    target_sources(zanfcp PRIVATE ${ARG_SOURCES})
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    install(FILES ${ARG_HEADERS} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zanfcp/${folder} COMPONENT development)
endfunction()

# zanfcp_test(NAME a.cpp …)
# One test program, linked with googletest; each of its cases becomes a ctest test of its own.
function(zanfcp_test name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE zanfcp zanfcp_warnings zanfcp_test_support GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()

# mxf_test(NAME a.cpp …)
# The same for the MXF library, which is tested without the framework.
function(mxf_test name)
    add_executable(${name} ${ARGN})
    target_link_libraries(${name} PRIVATE tamrelmxf zanfcp_warnings zanfcp_test_files GTest::gmock GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()

# zanfcp_fuzz_target(NAME a.cpp) — seeds in fuzz/corpus/NAME, dictionary in fuzz/NAME.dict where there is one.
function(zanfcp_fuzz_target name)
    add_executable(fuzz_${name} ${ARGN})
    target_link_libraries(fuzz_${name} PRIVATE zanfcp zanfcp_warnings)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
endfunction()
