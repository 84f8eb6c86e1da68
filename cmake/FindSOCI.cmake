# Finds SOCI's core library and its PostgreSQL back end (Debian's package ships no CMake files).
#
# Defines SOCI_FOUND, SOCI_VERSION and the targets SOCI::core and SOCI::postgresql.

find_path(SOCI_INCLUDE_DIR soci/soci.h)
find_library(SOCI_CORE_LIBRARY soci_core)
find_library(SOCI_POSTGRESQL_LIBRARY soci_postgresql)

if(SOCI_INCLUDE_DIR)
  file(STRINGS "${SOCI_INCLUDE_DIR}/soci/version.h" _soci_version
       REGEX "^#define SOCI_LIB_VERSION \"[0-9_]+\"")
  string(REGEX REPLACE ".*\"([0-9_]+)\".*" "\\1" SOCI_VERSION "${_soci_version}")
  string(REPLACE "_" "." SOCI_VERSION "${SOCI_VERSION}")
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(
  SOCI
  REQUIRED_VARS SOCI_CORE_LIBRARY SOCI_POSTGRESQL_LIBRARY SOCI_INCLUDE_DIR
  VERSION_VAR SOCI_VERSION)

if(SOCI_FOUND AND NOT TARGET SOCI::core)
  add_library(SOCI::core UNKNOWN IMPORTED)
  set_target_properties(
    SOCI::core PROPERTIES IMPORTED_LOCATION "${SOCI_CORE_LIBRARY}"
                          INTERFACE_INCLUDE_DIRECTORIES "${SOCI_INCLUDE_DIR}")
  add_library(SOCI::postgresql UNKNOWN IMPORTED)
  set_target_properties(
    SOCI::postgresql PROPERTIES IMPORTED_LOCATION "${SOCI_POSTGRESQL_LIBRARY}"
                                INTERFACE_LINK_LIBRARIES SOCI::core)
endif()
mark_as_advanced(SOCI_INCLUDE_DIR SOCI_CORE_LIBRARY SOCI_POSTGRESQL_LIBRARY)
