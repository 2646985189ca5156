include(CMakeFindDependencyMacro)
find_dependency(Boost 1.74 COMPONENTS thread)
include("${CMAKE_CURRENT_LIST_DIR}/brindleTargets.cmake")
