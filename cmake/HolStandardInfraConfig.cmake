# What `find_package(HolStandardInfra)` reads: the target HolStandardInfra::HolStandardInfra. The
# library keeps what it is built with to itself, so there is nothing else to find.
include(${CMAKE_CURRENT_LIST_DIR}/HolStandardInfraTargets.cmake)

# There are no components to ask for; one that is required is not there.
foreach(component IN LISTS HolStandardInfra_FIND_COMPONENTS)
  if(HolStandardInfra_FIND_REQUIRED_${component})
    set(HolStandardInfra_FOUND FALSE)
    set(HolStandardInfra_NOT_FOUND_MESSAGE "HolStandardInfra has no component ${component}")
  endif()
endforeach()
