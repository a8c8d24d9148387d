# Every target of ours links volbrin_warnings. Warnings are errors, under both compilers.
add_library(volbrin_warnings INTERFACE)
target_compile_options(
  volbrin_warnings
  INTERFACE -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion
            -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor -Wcast-align -Wundef
            -Wimplicit-fallthrough)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 warns of overlaps that can't be in every "text" + string (gcc.gnu.org/PR105651).
  target_compile_options(volbrin_warnings INTERFACE -Wno-restrict)
endif()
