# Flags for the project's own code, but not for third-party code.
add_library(keldra_flags INTERFACE)
target_include_directories(keldra_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(keldra_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${KELDRA_WERROR}>:-Werror>)
# Declares strptime, daemon, CLOCK_MONOTONIC_RAW and the like without language extensions.
target_compile_definitions(keldra_flags INTERFACE _GNU_SOURCE)

# A 32-bit time_t ends in 2038, and a 32-bit off_t at 2 GB. Both have 64 bits on every machine, also
# in third-party code, and in programs that use the core library, since they exchange times with it.
set(QUENDA_DEFINITIONS _FILE_OFFSET_BITS=64 _TIME_BITS=64)
add_compile_definitions(${QUENDA_DEFINITIONS})

# Keeps unused functions and paths of the building machine out of the binary.
add_compile_options(-ffunction-sections -fdata-sections
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}/=)
add_link_options(-Wl,--gc-sections -Wl,--as-needed)

# Distributions build programs that run as root in this way: with checked copies, a guarded stack, a
# call table that is read-only from the start, and code at random addresses. A project that includes
# this one chooses its own flags.
if(PROJECT_IS_TOP_LEVEL)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-fstack-clash-protection QUENDA_HAS_STACK_CLASH)
  add_compile_options(-fstack-protector-strong
    $<$<BOOL:${QUENDA_HAS_STACK_CLASH}>:-fstack-clash-protection>
    "$<$<IN_LIST:$<TARGET_PROPERTY:TYPE>,EXECUTABLE;STATIC_LIBRARY>:-fPIE>")
  add_link_options(-Wl,-z,relro,-z,now $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
  if(NOT KELDRA_SANITIZE)
    # The C library checks copies only in optimised code. Some compilers define a level themselves.
    add_compile_options("$<$<NOT:$<CONFIG:Debug,>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  endif()
endif()

if(KELDRA_LTO)
  set(CMAKE_INTERPROCEDURAL_OPTIMIZATION ON)
  # Programs that use the installed core library may be linked without it.
  add_compile_options(-ffat-lto-objects)
endif()

if(KELDRA_SANITIZE)
  add_compile_options(-fsanitize=${KELDRA_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KELDRA_SANITIZE})
endif()

# keldra_library(NAME SOURCES... [PUBLIC libs...] [PRIVATE libs...]): one static library per folder.
function(keldra_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  set_property(GLOBAL APPEND PROPERTY KELDRA_LIBRARIES ${name})
  target_link_libraries(${name} PUBLIC keldra_flags ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
endfunction()
