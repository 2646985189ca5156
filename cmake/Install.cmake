# Installs the library, its public headers, the command, and the package for find_package(brindle).
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/brindle)

install(TARGETS brindle EXPORT brindleTargets)
install(EXPORT brindleTargets NAMESPACE brindle:: DESTINATION ${package_dir})
install(DIRECTORY brindle ${brindle_generated_dir}/brindle DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/brindleConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
configure_file(cmake/brindleConfig.cmake.in brindleConfig.cmake @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/brindleConfig.cmake ${PROJECT_BINARY_DIR}/brindleConfigVersion.cmake
  DESTINATION ${package_dir})

# GDB loads the printers by itself from here, if the data directory is its own, as with the prefix /usr.
if(BRINDLE_SHARED)
  install(FILES debugger/brindle-gdb.py RENAME libbrindle.so.${brindle_version}-gdb.py
    DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR})
endif()

set_target_properties(brindle_command PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
install(TARGETS brindle_command)
