# The floor under every figure: a program that links the same libraries and does nothing. That they are the same is
# checked by the benchmark.
add_executable(bench_startup_floor EXCLUDE_FROM_ALL startup_floor.cpp)
target_link_options(bench_startup_floor PRIVATE -Wl,--no-as-needed $<TARGET_PROPERTY:zanfcp-cli,LINK_OPTIONS>)
set_target_properties(bench_startup_floor PROPERTIES OUTPUT_NAME startup_floor)

add_executable(bench_startup startup_bench.cpp Measure.cpp ${PROJECT_SOURCE_DIR}/tests/support/TempFolder.cpp)
target_link_libraries(bench_startup PRIVATE zanfcp zanfcp_warnings)
target_compile_definitions(bench_startup PRIVATE
    ZANFCP_PROGRAM="$<TARGET_FILE:zanfcp-cli>"
    FLOOR_PROGRAM="$<TARGET_FILE:bench_startup_floor>"
    SAMPLE="${PROJECT_SOURCE_DIR}/samples/CAM_A.mov")
add_dependencies(bench_startup zanfcp-cli bench_startup_floor)
