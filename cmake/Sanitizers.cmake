# VOLBRIN_SANITIZE: empty, "address,undefined" or "thread". For the whole tree, since code with and
# without a sanitizer doesn't mix.
set(VOLBRIN_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(VOLBRIN_SANITIZE)
  add_compile_options(-fsanitize=${VOLBRIN_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${VOLBRIN_SANITIZE})
endif()

# The fuzz targets steer by what their inputs reach, so all code tells of it.
if(VOLBRIN_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
