# How every target of this tree is compiled: warnings are errors, and sanitizers reach everything.

add_library(brindle_options INTERFACE)
target_compile_options(brindle_options INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wundef
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety>) # by the marks of utility/src/base/ThreadAnnotations.h

if(BRINDLE_SANITIZE)
  add_compile_options(-fsanitize=${BRINDLE_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${BRINDLE_SANITIZE})
endif()
if(BRINDLE_FUZZ)
  # Coverage for the fuzz targets; the runtime is linked into those alone.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
