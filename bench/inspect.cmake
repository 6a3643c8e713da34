pkg_check_modules(LIBAVFORMAT REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil)
add_executable(bench_inspect inspect_bench.cpp ${PROJECT_SOURCE_DIR}/tests/support/MovieBuilder.cpp)
target_link_libraries(bench_inspect PRIVATE bench_measure zanfcp zanfcp_warnings PkgConfig::LIBAVFORMAT)
