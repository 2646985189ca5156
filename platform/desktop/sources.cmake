# Shortcuts and file associations in the formats of the free desktops, for systems that use these: implements
# platform/ShellLink.h and platform/FileAssociations.h by means of the rest of platform/*.h.
list(APPEND brindle_platform_sources
  platform/desktop/KeyFile.cpp
  platform/desktop/DesktopEntry.cpp
  platform/desktop/ShellLink.cpp
  platform/desktop/MimeTables.cpp
  platform/desktop/FileAssociations.cpp)
