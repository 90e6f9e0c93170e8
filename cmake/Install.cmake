# What `cmake --install` lays out: a tree that may be moved, with the library, its headers, the
# shipped standards, the tool and what `find_package` and pkg-config need.
#
# The tree is stated twice, from one build. Once as the whole of an installation. Once again as the
# components `deb-...`, which only packages are made of: there the library lies where Debian keeps
# those of one architecture, and the tool finds it without a path of its own.
include(CMakePackageConfigHelpers)

set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/HolStandardInfra)
set(standards_folder ${CMAKE_INSTALL_DATADIR}/HolStandardInfra/standards)

# Objects of the contract have another layout where live ones are counted: who uses such a library
# counts, too.
target_compile_definitions(HolStandardInfra INTERFACE
  $<INSTALL_INTERFACE:$<$<BOOL:${HOL_DEVELOPMENT_BUILD}>:HOL_DEVELOPMENT_BUILD>>)
set(development_definition "")
if(HOL_DEVELOPMENT_BUILD)
  set(development_definition " -DHOL_DEVELOPMENT_BUILD")
endif()

write_basic_package_version_file(${PROJECT_BINARY_DIR}/HolStandardInfraConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)

# The tool finds the library from where it lies itself.
if(TARGET holstd)
  file(RELATIVE_PATH library_from_tool ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(holstd PROPERTIES INSTALL_RPATH "\$ORIGIN/${library_from_tool}")
endif()

# hol_install_library(FOLDER PREFIX [EXCLUDE_FROM_ALL]): the library in FOLDER, in components whose
# names begin with PREFIX.
function(hol_install_library library_folder prefix)
  install(TARGETS HolStandardInfra EXPORT ${prefix}HolStandardInfraTargets
    LIBRARY
      DESTINATION ${library_folder}
      COMPONENT ${prefix}runtime
      NAMELINK_COMPONENT ${prefix}development
      ${ARGN}
    INCLUDES DESTINATION ${header_folder})

  set(package_folder ${library_folder}/cmake/HolStandardInfra)
  install(EXPORT ${prefix}HolStandardInfraTargets
    FILE HolStandardInfraTargets.cmake
    NAMESPACE HolStandardInfra::
    DESTINATION ${package_folder}
    COMPONENT ${prefix}development ${ARGN})
  install(FILES
    cmake/HolStandardInfraConfig.cmake
    ${PROJECT_BINARY_DIR}/HolStandardInfraConfigVersion.cmake
    DESTINATION ${package_folder}
    COMPONENT ${prefix}development ${ARGN})

  file(RELATIVE_PATH prefix_from_package /${library_folder}/pkgconfig /)
  string(REGEX REPLACE "/$" "" prefix_from_package ${prefix_from_package})
  set(pkgconfig_file ${PROJECT_BINARY_DIR}/${prefix}pkgconfig/HolStandardInfra.pc)
  configure_file(cmake/HolStandardInfra.pc.in ${pkgconfig_file} @ONLY)
  install(FILES ${pkgconfig_file}
    DESTINATION ${library_folder}/pkgconfig
    COMPONENT ${prefix}development ${ARGN})
endfunction()

# hol_install_the_rest(PREFIX [EXCLUDE_FROM_ALL]): what lies in the same place everywhere.
function(hol_install_the_rest prefix)
  foreach(folder include platform/include)
    install(DIRECTORY ${folder}/
      DESTINATION ${header_folder}
      COMPONENT ${prefix}development ${ARGN}
      FILES_MATCHING PATTERN "*.h")
  endforeach()
  install(FILES ${PROJECT_BINARY_DIR}/src/include/HolStandardInfraExport.h
    DESTINATION ${header_folder}
    COMPONENT ${prefix}development ${ARGN})

  # With the texts that they are made from: the documents begin with these.
  install(DIRECTORY standards/
    DESTINATION ${standards_folder}
    COMPONENT ${prefix}standards ${ARGN}
    FILES_MATCHING PATTERN "*.xml" PATTERN "legacy/*.txt")

  if(TARGET holstd)
    install(TARGETS holstd RUNTIME
      DESTINATION ${CMAKE_INSTALL_BINDIR}
      COMPONENT ${prefix}tool ${ARGN})
    # Manual pages and completions, which the build leaves where an installation has them.
    foreach(folder man bash-completion zsh)
      install(DIRECTORY ${PROJECT_BINARY_DIR}/share/${folder}
        DESTINATION ${CMAKE_INSTALL_DATADIR}
        COMPONENT ${prefix}tool ${ARGN})
    endforeach()
  endif()
endfunction()

# hol_install_documents(PREFIX TOOL_FOLDER MODULE_FOLDER [EXCLUDE_FROM_ALL]): below share/doc what is
# read, in TOOL_FOLDER, and the examples, in MODULE_FOLDER.
function(hol_install_documents prefix tool_folder module_folder)
  set(documents_folder ${CMAKE_INSTALL_DATADIR}/doc)
  install(FILES README.md CHANGELOG.md
    DESTINATION ${documents_folder}/${tool_folder}
    COMPONENT ${prefix}tool ${ARGN})
  # reference.md is the title page of the reference that a clone makes.
  install(DIRECTORY docs
    DESTINATION ${documents_folder}/${tool_folder}
    COMPONENT ${prefix}tool ${ARGN}
    FILES_MATCHING PATTERN "*.md" PATTERN "*.svg" PATTERN reference.md EXCLUDE)
  install(DIRECTORY examples
    DESTINATION ${documents_folder}/${module_folder}
    COMPONENT ${prefix}development ${ARGN})
endfunction()

hol_install_library(${CMAKE_INSTALL_LIBDIR} "")
hol_install_the_rest("")
hol_install_documents("" HolStandardInfra HolStandardInfra)
