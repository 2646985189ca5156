set(brindle_architecture s390x) # big-endian
set(brindle_processor s390x)
set(brindle_triple s390x-linux-gnu)
include(${CMAKE_CURRENT_LIST_DIR}/debian-cross.cmake)
