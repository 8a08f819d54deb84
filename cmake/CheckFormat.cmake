# Fails on a C++ file that clang-format would change.
#   cmake -D ROOT=SOURCE_DIR -P CheckFormat.cmake

find_program(CLANG_FORMAT clang-format REQUIRED)
set(patterns)
foreach(room base engine audio model ui app ctl platform tests bench tools)
    list(APPEND patterns "${ROOT}/${room}/*.h" "${ROOT}/${room}/*.cpp" "${ROOT}/${room}/*.mm")
endforeach()
file(GLOB_RECURSE files ${patterns})
if(NOT files)
    message(FATAL_ERROR "no C++ files found below ${ROOT}: nothing was checked")
endif()
execute_process(COMMAND "${CLANG_FORMAT}" --dry-run --Werror ${files} RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "some files are not formatted: clang-format -i FILE")
endif()
