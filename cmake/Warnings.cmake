# The warnings every target of this project is built with.
option(DORVDL_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)

add_library(dorvdl_warnings INTERFACE)
target_compile_options(
  dorvdl_warnings
  INTERFACE -Wall -Wextra -Wshadow -Wformat=2 -Wold-style-cast -Woverloaded-virtual -Wconversion
            -Wnull-dereference -Wundef $<$<BOOL:${DORVDL_WARNINGS_AS_ERRORS}>:-Werror>)
