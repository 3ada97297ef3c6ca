# The texts of the build records. Every build checks them and writes them only when one has changed:
# a new commit recompiles only the few sources that include them.
set(KELDRA_BUILD_DATA_DIR ${PROJECT_BINARY_DIR}/generated)
set(KELDRA_BUILD_DATA ${KELDRA_BUILD_DATA_DIR}/BuildData.h)
set(KELDRA_BUILD_COMMENT "" CACHE STRING "Free text for the build records")

add_custom_target(keldra_build_data
  COMMAND ${CMAKE_COMMAND}
    -DOUTPUT=${KELDRA_BUILD_DATA}
    -DSOURCE_DIR=${PROJECT_SOURCE_DIR}
    -DVERSION=${PROJECT_VERSION}
    -DPLATFORM=${CMAKE_SYSTEM_PROCESSOR}-${CMAKE_SYSTEM_NAME}
    -DCOMPILER=${CMAKE_CXX_COMPILER}
    -DCOMMENT=${KELDRA_BUILD_COMMENT}
    -P ${PROJECT_SOURCE_DIR}/cmake/WriteBuildData.cmake
  BYPRODUCTS ${KELDRA_BUILD_DATA}
  VERBATIM
  COMMENT "Checking the build record")

# keldra_build_record(TARGET): TARGET's sources may include "BuildData.h".
function(keldra_build_record target)
  add_dependencies(${target} keldra_build_data)
  target_include_directories(${target} PRIVATE ${KELDRA_BUILD_DATA_DIR})
endfunction()
