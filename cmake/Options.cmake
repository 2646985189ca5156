# How every target of this tree is compiled: without a warning, and sanitizers reach everything.

add_library(brindle_options INTERFACE)
target_compile_options(brindle_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast
  -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align -Wundef
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wthread-safety>) # by the marks of utility/src/base/ThreadAnnotations.h
if(BRINDLE_WERROR)
  target_compile_options(brindle_options INTERFACE -Werror)
endif()

if(BRINDLE_HARDENING)
  # What Debian's dpkg-buildflags sets with hardening=+all; the fortified C library needs optimisation.
  add_compile_options(-fstack-protector-strong -fstack-clash-protection -Wformat -Werror=format-security
    "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>"
    $<$<STREQUAL:${CMAKE_SYSTEM_PROCESSOR},x86_64>:-fcf-protection>)
  add_link_options(LINKER:-z,relro LINKER:-z,now)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  include(CheckPIESupported)
  check_pie_supported()
endif()
if(BRINDLE_SANITIZE)
  # Stack traces need lines alone, and the rest of the debug information doubles the time of a build.
  add_compile_options(-fsanitize=${BRINDLE_SANITIZE} -fno-sanitize-recover=all
    -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${BRINDLE_SANITIZE})
endif()
if(BRINDLE_FUZZ)
  # Coverage for the fuzz targets, which alone link the runtime.
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
