# shared_name(LIBRARY_FILE VARIABLE)
# The name by which programs find a shared library when they run, such as libfoo.so.2.
function(shared_name library variable)
    execute_process(COMMAND ${CMAKE_READELF} -d ${library} OUTPUT_VARIABLE dynamic ERROR_QUIET)
    if(NOT dynamic MATCHES "\\(SONAME\\)[^[]*\\[([^]]+)\\]")
        message(FATAL_ERROR "${library} is no shared library")
    endif()
    set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()
