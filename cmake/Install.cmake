# What `cmake --install` lays out: a tree that may be moved, with the library, its headers, the
# shipped standards, the tool and what `find_package` needs.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/HolStandardInfra)
set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/HolStandardInfra)

install(TARGETS HolStandardInfra EXPORT HolStandardInfraTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${header_folder})
# Objects of the contract have another layout where live ones are counted: who uses such a library
# counts, too.
target_compile_definitions(HolStandardInfra INTERFACE
  $<INSTALL_INTERFACE:$<$<BOOL:${HOL_DEVELOPMENT_BUILD}>:HOL_DEVELOPMENT_BUILD>>)
foreach(folder include platform/include)
  install(DIRECTORY ${folder}/ DESTINATION ${header_folder} FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES ${PROJECT_BINARY_DIR}/src/include/HolStandardInfraExport.h
  DESTINATION ${header_folder})

install(EXPORT HolStandardInfraTargets
  NAMESPACE HolStandardInfra::
  DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/HolStandardInfraConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  cmake/HolStandardInfraConfig.cmake
  ${PROJECT_BINARY_DIR}/HolStandardInfraConfigVersion.cmake
  DESTINATION ${package_folder})

if(TARGET holstd)
  file(RELATIVE_PATH library_from_tool
    ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(holstd PROPERTIES INSTALL_RPATH "\$ORIGIN/${library_from_tool}")
  install(TARGETS holstd RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
