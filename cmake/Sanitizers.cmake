# -DDORVDL_SANITIZE=address,undefined builds everything with those sanitizers (preset "asan"), and
# -DDORVDL_SANITIZE=thread with that one (preset "tsan").
set(DORVDL_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")
if(DORVDL_SANITIZE)
  # "vptr" needs the type information of SOCI's back end, which that library does not export. The
  # warning is wrong about boost::optional in code that has been instrumented.
  add_compile_options(-fsanitize=${DORVDL_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
                      -Wno-maybe-uninitialized)
  add_link_options(-fsanitize=${DORVDL_SANITIZE})
endif()
