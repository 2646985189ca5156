set(brindle_architecture arm64)
set(brindle_processor aarch64)
set(brindle_triple aarch64-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
