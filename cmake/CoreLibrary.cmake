# The core library for other programs of the terminal: one archive of all folders of core/, the
# shell runner and the JSON values, and the headers under the same names as here. A program finds it
# by find_package or pkg-config after
#   cmake --install BUILD --component quenda --prefix DIRECTORY
# or uses add_subdirectory; docs/core-library.md shows all three. An installation that does not name
# the component installs only the daemon.
include(CMakePackageConfigHelpers)

# All libraries that are defined so far.
get_property(parts GLOBAL PROPERTY KELDRA_LIBRARIES)
list(TRANSFORM parts REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>")
add_library(quenda STATIC ${parts} $<TARGET_OBJECTS:quenda_json>)
add_library(quenda::core ALIAS quenda)
set_target_properties(quenda PROPERTIES LINKER_LANGUAGE CXX EXPORT_NAME core)
target_compile_features(quenda INTERFACE cxx_std_17)
target_compile_definitions(quenda INTERFACE ${QUENDA_DEFINITIONS})
# Not as system headers: another jsoncpp's, which are usually no system headers, would come first.
target_include_directories(quenda INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${QUENDA_JSON_DIR}/include>)

set(QUENDA_INCLUDE ${CMAKE_INSTALL_INCLUDEDIR}/quenda)
set(component COMPONENT quenda EXCLUDE_FROM_ALL)
install(TARGETS quenda EXPORT quenda ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${component}
  INCLUDES DESTINATION ${QUENDA_INCLUDE})
# No header for users includes the numbers, and MakeBuildRecord.h needs this project's build.
install(DIRECTORY core shell DESTINATION ${QUENDA_INCLUDE} ${component} FILES_MATCHING PATTERN *.h
  PATTERN internal EXCLUDE PATTERN numbers EXCLUDE PATTERN MakeBuildRecord.h EXCLUDE)
# Next to the headers that include them, which therefore find them before any other copy. The
# library has no reader.
install(DIRECTORY ${QUENDA_JSON_DIR}/include/json DESTINATION ${QUENDA_INCLUDE}/core/options ${component}
  FILES_MATCHING REGEX "/(allocator|config|forwards|value|version|writer)\\.h$")
install(FILES ${JSONCPP_SOURCE_DIR}/LICENSE RENAME copyright.jsoncpp
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quenda ${component})
install(FILES LICENSE RENAME copyright
  DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/quenda ${component})

set(QUENDA_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/quenda)
install(EXPORT quenda NAMESPACE quenda:: FILE quendaConfig.cmake DESTINATION ${QUENDA_PACKAGE}
  ${component})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/generated/quendaConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/generated/quendaConfigVersion.cmake
  DESTINATION ${QUENDA_PACKAGE} ${component})

# The prefix is relative to the file, so that the installation can choose it.
file(RELATIVE_PATH QUENDA_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
list(TRANSFORM QUENDA_DEFINITIONS PREPEND -D OUTPUT_VARIABLE QUENDA_CFLAGS)
list(JOIN QUENDA_CFLAGS " " QUENDA_CFLAGS)
configure_file(cmake/quenda.pc.in generated/quenda.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/generated/quenda.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${component})
