# Builds for another machine with Debian's cross compilers, and runs what is built under QEMU's user emulation. Included
# by the file of the machine, which sets the name of the architecture (Debian's), of the processor and the triple.
# tools/cross fills the sysroot with the libraries that brindle needs; the C and C++ libraries come with the compiler.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${brindle_processor})
set(CMAKE_C_COMPILER ${brindle_triple}-gcc)
set(CMAKE_CXX_COMPILER ${brindle_triple}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${brindle_triple})
set(CMAKE_FIND_ROOT_PATH ${CMAKE_CURRENT_LIST_DIR}/../../build/sysroot/${brindle_architecture})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${brindle_processor}-static -L /usr/${brindle_triple})
