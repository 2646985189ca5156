# Refuses, in one line, what the library is known not to build or run on.

# On other versions it may well work, but nobody has seen it.
set(oldest_GNU 12)
set(oldest_Clang 14)
set(oldest_libstdcxx 12)
set(oldest_libcxx 14)

if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
  message(FATAL_ERROR "brindle needs a 64-bit target")
endif()
if(NOT DEFINED oldest_${CMAKE_CXX_COMPILER_ID}
   OR CMAKE_CXX_COMPILER_VERSION VERSION_LESS oldest_${CMAKE_CXX_COMPILER_ID})
  message(FATAL_ERROR "brindle needs GCC ${oldest_GNU} or Clang ${oldest_Clang}, or later; "
    "this is ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}")
endif()
if(NOT CMAKE_SCRIPT_MODE_FILE)
  include(CheckCXXSourceCompiles)
  # What is not defined counts as 0.
  check_cxx_source_compiles("#include <string>
#if _GLIBCXX_RELEASE < ${oldest_libstdcxx} && _LIBCPP_VERSION < ${oldest_libcxx}000
#error
#endif
int main() {}" brindle_has_standard_library)
  if(NOT brindle_has_standard_library)
    message(FATAL_ERROR "brindle needs libstdc++ ${oldest_libstdcxx} or libc++ ${oldest_libcxx}, or later, "
      "as the standard library")
  endif()
  check_cxx_source_compiles("#include <string>
#ifndef _LIBCPP_VERSION
#error
#endif
int main() {}" brindle_uses_libcxx)
  check_cxx_source_compiles("#include <string>
#if __linux__ && !__GLIBC__
#error
#endif
int main() {}" brindle_has_c_library)
  if(NOT brindle_has_c_library)
    message(FATAL_ERROR "brindle needs the GNU C library on Linux")
  endif()
endif()
