# What any system can use. These sources call neither the system nor another folder below platform/.
list(APPEND brindle_platform_sources
  platform/portable/ByteEscapes.cpp
  platform/portable/TextEncoding.cpp
  platform/portable/CompletionPort.cpp
  platform/portable/MessageLoop.cpp)
