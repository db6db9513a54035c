# kzmsp_library(<name> SOURCES <file>... [USES <lower library>...] [FOREIGN <library>...])
# A static library that shows only its own folder; USES are the levels below it, FOREIGN libraries stay private.
function(kzmsp_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;USES;FOREIGN" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC ${ARG_USES} PRIVATE kzmsp_options ${ARG_FOREIGN})
    kzmsp_harden(${name})
endfunction()
