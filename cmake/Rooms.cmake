# tallyvox_library(ROOM SOURCE...) makes the library of one room and links it to
# the rooms that the declaration lets it use.

function(room name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "USES;HEADERS")
    set_property(GLOBAL PROPERTY tallyvox_uses_${name} "${arg_USES}")
endfunction()
include(Declaration)

function(tallyvox_library name)
    add_library(tallyvox_${name} STATIC ${ARGN})
    target_include_directories(tallyvox_${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    get_property(uses GLOBAL PROPERTY tallyvox_uses_${name})
    list(TRANSFORM uses PREPEND tallyvox_)
    target_link_libraries(tallyvox_${name} PUBLIC ${uses})
endfunction()
