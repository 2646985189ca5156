# What any system can use: these sources make no calls of the system but those of platform/*.h.
list(APPEND brindle_platform_sources
  platform/portable/ByteEscapes.cpp
  platform/portable/TextEncoding.cpp
  platform/portable/Paths.cpp
  platform/portable/FileContent.cpp
  platform/portable/CompletionPort.cpp
  platform/portable/MessageLoop.cpp)
