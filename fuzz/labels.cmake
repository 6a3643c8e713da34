zanfcp_fuzz_target(labels_file labels_file.cpp)
