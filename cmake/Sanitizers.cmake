# -DDORVDL_SANITIZE=address,undefined builds everything with those sanitizers (preset "asan").
set(DORVDL_SANITIZE "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")
if(DORVDL_SANITIZE)
  add_compile_options(-fsanitize=${DORVDL_SANITIZE} -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${DORVDL_SANITIZE})
endif()
