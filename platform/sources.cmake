# Collects the sources of the platform layer in brindle_platform_sources: the portable ones, and those of the
# folder that BRINDLE_PLATFORM names, whose own sources.cmake lists what implements platform/*.h on that system.
set(BRINDLE_PLATFORM linux CACHE STRING "The folder below platform/ that makes the system's calls")
if(NOT EXISTS ${CMAKE_CURRENT_LIST_DIR}/${BRINDLE_PLATFORM}/sources.cmake)
  message(FATAL_ERROR "BRINDLE_PLATFORM is ${BRINDLE_PLATFORM}, but there is no platform/${BRINDLE_PLATFORM}/sources.cmake")
endif()
set(brindle_platform_sources)
include(${CMAKE_CURRENT_LIST_DIR}/portable/sources.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/${BRINDLE_PLATFORM}/sources.cmake)
