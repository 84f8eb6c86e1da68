# What is installed, and how other projects find it: a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/dorvdlcore")

install(TARGETS dorvdlcore dorvdlproto dorvplatform EXPORT dorvdlcore-targets)

# The messages' headers go beside the others, under dorvdl/proto/.
install(
  DIRECTORY include/ platform/include/ "${PROJECT_BINARY_DIR}/proto/"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING
  PATTERN "*.h"
  PATTERN "CMakeFiles" EXCLUDE)
install(
  DIRECTORY proto/
  DESTINATION "${CMAKE_INSTALL_DATADIR}/dorvdlcore/proto"
  FILES_MATCHING
  PATTERN "*.proto")

# The schema, with the tool that applies it; the tool looks for the schema beside its own folder,
# also when it is called by the link in PATH.
install(DIRECTORY schema DESTINATION "${CMAKE_INSTALL_DATADIR}/dorvdlcore")
install(PROGRAMS tools/apply-schema DESTINATION "${CMAKE_INSTALL_DATADIR}/dorvdlcore/tools")
set(apply_schema_link "${PROJECT_BINARY_DIR}/apply-schema")
file(RELATIVE_PATH bin_to_data "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_DATADIR}")
file(CREATE_LINK "${bin_to_data}/dorvdlcore/tools/apply-schema" "${apply_schema_link}" SYMBOLIC)
install(PROGRAMS "${apply_schema_link}" DESTINATION "${CMAKE_INSTALL_BINDIR}")

# The CMake package. It finds what the targets refer to by itself, SOCI by the module beside it.
install(EXPORT dorvdlcore-targets NAMESPACE dorvdl:: DESTINATION "${package_folder}")
configure_package_config_file(
  cmake/dorvdlcore-config.cmake.in "${PROJECT_BINARY_DIR}/dorvdlcore-config.cmake"
  INSTALL_DESTINATION "${package_folder}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/dorvdlcore-config-version.cmake" COMPATIBILITY SameMinorVersion)
install(
  FILES "${PROJECT_BINARY_DIR}/dorvdlcore-config.cmake"
        "${PROJECT_BINARY_DIR}/dorvdlcore-config-version.cmake" cmake/FindSOCI.cmake
  DESTINATION "${package_folder}")

# The pkg-config file. SOCI and Boost have none of their own to refer to; their folders are named
# where the compiler does not look by itself.
set(pc_cflags "")
foreach(folder IN ITEMS "${SOCI_INCLUDE_DIR}" ${Boost_INCLUDE_DIRS})
  if(NOT folder IN_LIST CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES)
    string(APPEND pc_cflags " -I${folder}")
  endif()
endforeach()
get_filename_component(folder "${SOCI_CORE_LIBRARY}" DIRECTORY)
set(pc_libs "")
if(NOT folder IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
  string(APPEND pc_libs " -L${folder}")
endif()
file(RELATIVE_PATH pc_to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" pc_to_prefix "${pc_to_prefix}")
configure_file(cmake/dorvdlcore.pc.in "${PROJECT_BINARY_DIR}/dorvdlcore.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/dorvdlcore.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
