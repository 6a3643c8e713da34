pkg_check_modules(LIBAVFORMAT REQUIRED IMPORTED_TARGET libavformat libavutil)
add_executable(bench_inspect inspect_bench.cpp
    ${PROJECT_SOURCE_DIR}/tests/support/MovieBuilder.cpp ${PROJECT_SOURCE_DIR}/tests/support/TempFolder.cpp)
target_link_libraries(bench_inspect PRIVATE zanfcp zanfcp_warnings PkgConfig::LIBAVFORMAT)
