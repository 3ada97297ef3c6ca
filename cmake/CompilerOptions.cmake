# The project's own code is compiled with these; third-party code is not.
add_library(keldra_options INTERFACE)
target_include_directories(keldra_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(keldra_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<BOOL:${KELDRA_WERROR}>:-Werror>)
# strptime, daemon, CLOCK_MONOTONIC_RAW and friends without the compiler's language extensions.
target_compile_definitions(keldra_options INTERFACE _GNU_SOURCE)

# Unused functions leave the binary; no path of the building machine enters it.
add_compile_options(-ffunction-sections -fdata-sections
  -ffile-prefix-map=${PROJECT_SOURCE_DIR}/= -ffile-prefix-map=${PROJECT_BINARY_DIR}/=)
add_link_options(-Wl,--gc-sections -Wl,--as-needed)

if(KELDRA_SANITIZE)
  add_compile_options(-fsanitize=${KELDRA_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${KELDRA_SANITIZE})
endif()

# keldra_library(NAME SOURCES... [PUBLIC libs...] [PRIVATE libs...]): one static library per folder.
function(keldra_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC keldra_options ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
endfunction()
