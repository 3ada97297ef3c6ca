# Builds jsoncpp's value model and writers, without its reader, with the changes of
# core/options/internal/JsoncppChanges.h: above all, freed texts are wiped. scripts/setup puts the
# source into the default directory below.
set(JSONCPP_SOURCE_DIR "${PROJECT_SOURCE_DIR}/third_party/jsoncpp" CACHE PATH
  "jsoncpp 1.9.5 source tree")
if(NOT EXISTS "${JSONCPP_SOURCE_DIR}/src/lib_json/json_value.cpp")
  message(FATAL_ERROR "No jsoncpp source in ${JSONCPP_SOURCE_DIR}. "
    "Run scripts/setup, or pass -DJSONCPP_SOURCE_DIR= with a jsoncpp 1.9.5 source tree.")
endif()

# change(PATTERN REPLACEMENT): replaces every match in `text`, the contents of the file `source`.
# Without a match it fails: another release must not be built without the change.
function(change pattern replacement)
  string(REGEX REPLACE "${pattern}" "${replacement}" changed "${text}")
  if(changed STREQUAL text)
    string(STRIP "${pattern}" pattern)
    message(FATAL_ERROR "No \"${pattern}\" to replace in ${JSONCPP_SOURCE_DIR}/${source}: "
      "is this jsoncpp 1.9.5?")
  endif()
  set(text "${changed}" PARENT_SCOPE)
endfunction()

# These values differ from those of any other copy of the library, and a program that links both
# must not mix them. So this copy's names are in a nested namespace, Json::Wiped, which is inline:
# Json::Value means ours where only our header is included, and is ambiguous, hence an error, where
# another copy's is included as well. The reader keeps its names, as it is not in our library.
set(QUENDA_JSON_DIR ${PROJECT_BINARY_DIR}/generated/jsoncpp)
file(GLOB json_sources RELATIVE ${JSONCPP_SOURCE_DIR}
  ${JSONCPP_SOURCE_DIR}/include/json/*.h ${JSONCPP_SOURCE_DIR}/src/lib_json/json_*.*)
foreach(source ${json_sources})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${JSONCPP_SOURCE_DIR}/${source})
  file(READ ${JSONCPP_SOURCE_DIR}/${source} text)
  if(NOT source MATCHES "reader|features")
    if(NOT source MATCHES "/(assertions|json|version)\\.h$")  # they declare nothing
      change("\nnamespace Json {" "\nnamespace Json { inline namespace Wiped {")
      change("\n} // namespace Json\n" "\n}} // namespace Json::Wiped\n")
    endif()
    if(source MATCHES "\\.h$")
      change("JSON_([A-Z_]*)H_INCLUDED" "QUENDA_JSON_\\1H_INCLUDED")
    endif()
  endif()
  if(source STREQUAL "include/json/forwards.h")
    change("\nclass (Reader|CharReader|CharReaderBuilder|Features);" "")
  elseif(source STREQUAL "include/json/config.h")
    # A failed check ends the process instead of throwing, in every build type. Numbers have 32
    # bits, as on the terminal.
    change("(#define QUENDA_JSON_CONFIG_H_INCLUDED\n)"
      "\\1#define JSON_USE_EXCEPTION 0\n#define JSON_NO_INT64 1\n")
  endif()
  file(CONFIGURE OUTPUT ${QUENDA_JSON_DIR}/${source} CONTENT "@text@" @ONLY)
endforeach()

add_library(quenda_json STATIC
  ${QUENDA_JSON_DIR}/src/lib_json/json_value.cpp
  ${QUENDA_JSON_DIR}/src/lib_json/json_writer.cpp)
target_include_directories(quenda_json SYSTEM PUBLIC ${QUENDA_JSON_DIR}/include)
target_include_directories(quenda_json PRIVATE ${PROJECT_SOURCE_DIR})
target_compile_options(quenda_json PRIVATE -w -UNDEBUG
  -include ${PROJECT_SOURCE_DIR}/core/options/internal/JsoncppChanges.h)
