find_package(pugixml REQUIRED)
add_executable(bench_xml_text xml_text_bench.cpp XmlCorpus.cpp CountingHeap.cpp)
target_link_libraries(bench_xml_text
    PRIVATE bench_measure zanfcp zanfcp_warnings LibXml2::LibXml2 pugixml::pugixml)
