add_executable(bench_show show_bench.cpp ${PROJECT_SOURCE_DIR}/tests/support/Recording.cpp)
target_link_libraries(bench_show PRIVATE zanfcp zanfcp_warnings)
