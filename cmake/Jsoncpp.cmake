# jsoncpp's value model and writers (the reader is left out), built from source with the changes
# of core/options/internal/JsoncppChanges.h: above all, every text it frees is wiped first.
# scripts/setup puts the source where the default below looks.
set(JSONCPP_SOURCE_DIR "${PROJECT_SOURCE_DIR}/third_party/jsoncpp" CACHE PATH
  "jsoncpp 1.9.5 source tree")
if(NOT EXISTS "${JSONCPP_SOURCE_DIR}/src/lib_json/json_value.cpp")
  message(FATAL_ERROR "No jsoncpp source in ${JSONCPP_SOURCE_DIR}. "
    "Run scripts/setup, or pass -DJSONCPP_SOURCE_DIR= with a jsoncpp 1.9.5 source tree.")
endif()

add_library(jsoncpp STATIC
  ${JSONCPP_SOURCE_DIR}/src/lib_json/json_value.cpp
  ${JSONCPP_SOURCE_DIR}/src/lib_json/json_writer.cpp)
target_include_directories(jsoncpp SYSTEM PUBLIC ${JSONCPP_SOURCE_DIR}/include)
# A failed check ends the process instead of throwing, in every build type. Numbers have 32 bits,
# as on the terminal.
target_compile_definitions(jsoncpp PUBLIC JSON_USE_EXCEPTION=0 JSON_NO_INT64)
target_include_directories(jsoncpp PRIVATE ${PROJECT_SOURCE_DIR})
target_compile_options(jsoncpp PRIVATE -w -UNDEBUG
  -ffile-prefix-map=${JSONCPP_SOURCE_DIR}/=jsoncpp/
  -include ${PROJECT_SOURCE_DIR}/core/options/internal/JsoncppChanges.h)
