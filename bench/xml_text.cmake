find_package(pugixml REQUIRED)
add_executable(bench_xml_text xml_text_bench.cpp)
target_link_libraries(bench_xml_text PRIVATE zanfcp zanfcp_warnings LibXml2::LibXml2 pugixml::pugixml)
