# Shortcuts, file associations and the well-known folders in the formats of the free desktops, for systems that use these: implements
# platform/ShellLink.h, platform/FileAssociations.h and platform/KnownFolders.h by means of the rest of platform/*.h.
list(APPEND brindle_platform_sources
  platform/desktop/KeyFile.cpp
  platform/desktop/DesktopEntry.cpp
  platform/desktop/ShellLink.cpp
  platform/desktop/MimeTables.cpp
  platform/desktop/FileAssociations.cpp
  platform/desktop/UserDirectories.cpp
  platform/desktop/KnownFolders.cpp)

# Where packages put what the library does not bring itself: by default below the prefix of the installation.
set(BRINDLE_PROGRAM_FILES_DIR "${CMAKE_INSTALL_FULL_LIBDIR}" CACHE PATH
  "Where installed programs keep what belongs to them alone, such as plug-ins")
set(BRINDLE_COMMON_FILES_DIR "${CMAKE_INSTALL_FULL_DATADIR}" CACHE PATH
  "Where installed programs keep what they share")
set_source_files_properties(platform/desktop/KnownFolders.cpp PROPERTIES COMPILE_DEFINITIONS
  "BRINDLE_PROGRAM_FILES_DIR=\"${BRINDLE_PROGRAM_FILES_DIR}\";BRINDLE_COMMON_FILES_DIR=\"${BRINDLE_COMMON_FILES_DIR}\"")
