zanfcp_fuzz_target(mxf_push mxf_push.cpp)
target_link_libraries(fuzz_mxf_push PRIVATE tamrelmxf)
