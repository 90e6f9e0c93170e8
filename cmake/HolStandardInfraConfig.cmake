# What `find_package(HolStandardInfra)` reads: the target HolStandardInfra::HolStandardInfra. The
# library keeps what it is built with to itself, so there is nothing else to find.
include(${CMAKE_CURRENT_LIST_DIR}/HolStandardInfraTargets.cmake)
