# The implementation of platform/*.h for Linux. A source may rely on the static objects of those above it.
list(APPEND brindle_platform_sources
  # errors and paths
  platform/linux/ErrnoTable.cpp
  platform/linux/SystemPath.cpp
  platform/linux/Volumes.cpp
  # files and directories
  platform/linux/FileLock.cpp
  platform/linux/LockedFile.cpp
  platform/linux/FileTimes.cpp
  platform/linux/Files.cpp
  platform/linux/FilePlace.cpp
  platform/linux/NewFile.cpp
  platform/linux/AppendContent.cpp
  platform/linux/FileReplacement.cpp
  platform/linux/TemporaryFile.cpp
  platform/linux/SaveRemains.cpp
  platform/linux/LogFile.cpp
  platform/linux/Directories.cpp
  platform/linux/RemoveTree.cpp
  # the user's settings, the process, identifiers
  platform/linux/Locale.cpp
  platform/linux/Clock.cpp
  platform/linux/Process.cpp
  platform/linux/DebugOutput.cpp
  platform/linux/Terminal.cpp
  platform/linux/ControllingTerminal.cpp
  platform/linux/ChildProcess.cpp
  platform/linux/Dialogs.cpp
  platform/linux/Uuid.cpp
  # sockets
  platform/linux/Fork.cpp
  platform/linux/OpenSockets.cpp
  platform/linux/LocalSocket.cpp
  # memory
  platform/linux/AlignedMemory.cpp
  platform/linux/MemoryNames.cpp
  platform/linux/SharedMemory.cpp
  # threads and what they wait on
  platform/linux/Threads.cpp
  platform/linux/Barrier.cpp
  platform/linux/ThreadEnd.cpp
  platform/linux/SleepOnWord.cpp
  platform/linux/WakeUpEvent.cpp)

# Where the program that shows dialogs is installed. Beside the library it is found wherever both are moved to.
if(BRINDLE_INSTALL)
  set(BRINDLE_DIALOG_PROGRAM "${CMAKE_INSTALL_FULL_LIBEXECDIR}/brindle/brindle-dialog" CACHE FILEPATH
    "Where brindle-dialog is installed")
  file(RELATIVE_PATH brindle_dialog_from_library "${CMAKE_INSTALL_FULL_LIBDIR}"
    "${CMAKE_INSTALL_FULL_LIBEXECDIR}/brindle/brindle-dialog")
else()
  set(BRINDLE_DIALOG_PROGRAM "" CACHE FILEPATH "Where brindle-dialog is installed")
  set(brindle_dialog_from_library "../libexec/brindle/brindle-dialog")
endif()
set_source_files_properties(platform/linux/Dialogs.cpp PROPERTIES COMPILE_DEFINITIONS
  "BRINDLE_DIALOG_PROGRAM=\"${BRINDLE_DIALOG_PROGRAM}\";BRINDLE_DIALOG_FROM_LIBRARY=\"${brindle_dialog_from_library}\"")

# Shortcuts and file associations are those of the free desktops.
include(${CMAKE_CURRENT_LIST_DIR}/../desktop/sources.cmake)
