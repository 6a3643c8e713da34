find_package(Threads REQUIRED)
add_executable(bench_event event_bench.cpp)
target_link_libraries(bench_event PRIVATE bench_measure zanfcp zanfcp_warnings Threads::Threads)
