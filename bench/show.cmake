add_executable(bench_show show_bench.cpp ${PROJECT_SOURCE_DIR}/tests/support/MovieBuilder.cpp)
target_link_libraries(bench_show PRIVATE bench_measure zanfcp zanfcp_warnings)
target_compile_definitions(bench_show PRIVATE ZANFCP_PROGRAM="$<TARGET_FILE:zanfcp-cli>")
add_dependencies(bench_show zanfcp-cli)
