# How everything here is compiled, whoever configures it. Warnings become errors
# in the presets only, so that a newer compiler never breaks a user's build.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

# What the toolkit generates is not ours to lint; clang-tidy wants one check at least.
file(WRITE "${PROJECT_BINARY_DIR}/.clang-tidy" "Checks: '-*,misc-definitions-in-headers'\n")

# bin/ beside share/ in the build tree as in an installation: the programs find
# their resources by the same rule in both.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

add_compile_options(
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
    -Wdouble-promotion -Wold-style-cast
    # A fused multiply-add changes the interpolation's bits.
    -ffp-contract=off)

option(TALLYVOX_WERROR "Treat warnings as errors" OFF)
if(TALLYVOX_WERROR)
    add_compile_options(-Werror)
endif()

set(TALLYVOX_SANITIZE "" CACHE STRING "Sanitizers to build with, as -fsanitize takes them")
set(TALLYVOX_SANITIZED 0)
if(TALLYVOX_SANITIZE)
    set(TALLYVOX_SANITIZED 1)
    add_compile_options(-fsanitize=${TALLYVOX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${TALLYVOX_SANITIZE})
    # The toolkit's headers use fences, which the thread sanitizer does not follow.
    add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-tsan>)
endif()
