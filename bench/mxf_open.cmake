pkg_check_modules(LIBAVFORMAT REQUIRED IMPORTED_TARGET libavformat libavcodec libavutil)
# Its pkg-config file names include folders of packages that it does not depend on.
find_library(LIBMEDIAINFO mediainfo REQUIRED)
add_executable(bench_mxf_open mxf_open_bench.cpp MxfPlaces.cpp)
target_compile_definitions(bench_mxf_open PRIVATE UNICODE)
target_link_libraries(bench_mxf_open
    PRIVATE bench_measure tamrelmxf zanfcp_warnings PkgConfig::LIBAVFORMAT ${LIBMEDIAINFO})
