# Compiler settings shared by every target: warnings are errors, floating point is the same in every
# build (no fused operations; SSE arithmetic on 32 bit, where x87 would round differently).

option(ORVA_32BIT "Build for 32-bit x86, the component's reference platform" OFF)
option(ORVA_SANITIZE "Build with address and undefined-behaviour sanitizers" OFF)
option(ORVA_BUILD_COMPONENT "Build the component and its small host (needs NSPR)" ON)
option(ORVA_BUILD_TESTS "Build the tests" ON)
option(ORVA_BUILD_BENCH "Build the benchmarks" OFF)
option(ORVA_FUZZ "Build the fuzz targets with the fuzzing engine (clang)" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_C_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g")
set(CMAKE_C_FLAGS_RELWITHDEBINFO "-O1 -g")

add_compile_options(-ffp-contract=off)
if(ORVA_32BIT)
  # -m32 -msse2 -mfpmath=sse come with the preset, before the compiler is examined.
  add_compile_definitions(_FILE_OFFSET_BITS=64)
endif()
if(ORVA_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

if(ORVA_FUZZ)
  # So that the engine sees which branches an input takes.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# Warnings for our own code only; third-party headers come in as system includes.
add_library(orva_warnings INTERFACE)
target_compile_options(orva_warnings INTERFACE
  -Wall -Wextra -Wconversion -Wcast-qual -Werror
  $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
  # What GCC does not count among conversions either.
  $<$<CXX_COMPILER_ID:Clang>:-Wno-sign-conversion>)

# orva_objects(NAME SOURCE...): one layer of a library, compiled once and put into the static and
# the shared form alike.
function(orva_objects name)
  add_library(${name} OBJECT ${ARGN})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:orva_warnings>)
endfunction()
