add_executable(bench_mxf_extract mxf_extract_bench.cpp MxfPlaces.cpp)
target_link_libraries(bench_mxf_extract PRIVATE bench_measure tamrelmxf zanfcp_warnings)
target_compile_definitions(bench_mxf_extract PRIVATE ZANFCP_PROGRAM="$<TARGET_FILE:zanfcp-cli>")
add_dependencies(bench_mxf_extract zanfcp-cli)
