# The warnings every target of this project is built with.
option(DORVDL_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)

add_library(dorvdl_warnings INTERFACE)
target_compile_options(
  dorvdl_warnings
  INTERFACE -Wall -Wextra -Wshadow -Wformat=2 -Wconversion -Wundef
            $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
            $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
            $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes> $<$<COMPILE_LANGUAGE:C>:-Wpedantic>
            $<$<BOOL:${DORVDL_WARNINGS_AS_ERRORS}>:-Werror>)
if(NOT DORVDL_SANITIZE)
  # It is wrong about headers of other libraries in code that a sanitizer has instrumented.
  target_compile_options(dorvdl_warnings INTERFACE -Wnull-dereference)
endif()
