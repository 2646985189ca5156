# Installs what is built, each part as a component: runtime (the shared library), development (headers, the archive,
# the packages for find_package and pkg-config), command, dialog and documentation.
include(CMakePackageConfigHelpers)
set(brindle_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/brindle)

install(TARGETS brindle EXPORT brindleTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(EXPORT brindleTargets NAMESPACE brindle:: DESTINATION ${brindle_package_dir} COMPONENT development)
install(DIRECTORY brindle ${brindle_generated_dir}/brindle DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development FILES_MATCHING PATTERN "*.h")
write_basic_package_version_file(${PROJECT_BINARY_DIR}/brindleConfigVersion.cmake
  VERSION ${brindle_version} COMPATIBILITY SameMajorVersion)
configure_file(cmake/brindleConfig.cmake.in brindleConfig.cmake @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/brindleConfig.cmake ${PROJECT_BINARY_DIR}/brindleConfigVersion.cmake
  DESTINATION ${brindle_package_dir} COMPONENT development)

# pkg-config moves what is below the prefix with the file itself; directories that are elsewhere stay where they are.
file(RELATIVE_PATH brindle_prefix_from_pc ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" brindle_prefix_from_pc "${brindle_prefix_from_pc}")
set(brindle_pc_prefix "\${pcfiledir}/${brindle_prefix_from_pc}")
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(brindle_pc_prefix ${CMAKE_INSTALL_PREFIX})
endif()
foreach(kind LIB INCLUDE)
  string(TOLOWER ${kind} name)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${kind}DIR}")
    set(brindle_pc_${name}dir ${CMAKE_INSTALL_${kind}DIR})
  else()
    set(brindle_pc_${name}dir "\${prefix}/${CMAKE_INSTALL_${kind}DIR}")
  endif()
endforeach()
set(brindle_pc_expat Requires.private)
set(brindle_pc_libraries)
if(NOT BRINDLE_SHARED) # a client that links an archive also links what the archive uses
  set(brindle_pc_expat Requires)
  set(brindle_pc_libraries " -Wl,-z,nodelete")
endif()
configure_file(cmake/brindle.pc.in brindle.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/brindle.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(BRINDLE_COMMAND)
  file(RELATIVE_PATH brindle_library_from_command ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(brindle_command PROPERTIES INSTALL_RPATH "$ORIGIN/${brindle_library_from_command}")
  install(TARGETS brindle_command DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT command)
  install(FILES host/manual/brindle.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT command)
  install(FILES host/manual/brindle.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME brindle COMPONENT command)
  install(FILES host/manual/_brindle DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT command)
  install(FILES host/manual/brindle.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
    COMPONENT command)
endif()
if(TARGET brindle_dialog)
  install(TARGETS brindle_dialog DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/brindle COMPONENT dialog)
endif()
# GDB loads the printers by itself from here, if the data directory is its own, as with the prefix /usr. LLDB has no such
# place: its user has it import them.
if(BRINDLE_SHARED)
  set(brindle_gdb_dir ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR})
  install(FILES debugger/brindle-gdb.py RENAME libbrindle.so.${brindle_version}-gdb.py
    DESTINATION ${brindle_gdb_dir} COMPONENT debugger)
  install(FILES debugger/brindle_values.py DESTINATION ${brindle_gdb_dir} COMPONENT debugger)
endif()
install(FILES debugger/brindle_lldb.py debugger/brindle_values.py
  DESTINATION ${CMAKE_INSTALL_DATADIR}/brindle/debugger COMPONENT debugger)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT documentation
  PATTERN CMakeLists.txt EXCLUDE PATTERN benchmarks EXCLUDE PATTERN abi EXCLUDE PATTERN check EXCLUDE)
