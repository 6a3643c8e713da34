zanfcp_fuzz_target(mxf_open mxf_open.cpp)
target_link_libraries(fuzz_mxf_open PRIVATE tamrelmxf)
