zanfcp_fuzz_target(avc avc.cpp)
target_link_libraries(fuzz_avc PRIVATE tamrelmxf)
