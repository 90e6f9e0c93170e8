# The Debian packages: `scripts/make-packages.sh`. They hold the components `deb-...` of
# Install.cmake below /usr.
if(NOT TARGET holstd OR NOT CMAKE_LIBRARY_ARCHITECTURE OR HOL_DEVELOPMENT_BUILD OR HOL_SANITIZERS)
  return()
endif()

set(runtime_package libholstandardinfra${PROJECT_VERSION_MAJOR})
set(development_package libholstandardinfra-dev)
set(tool_package holstd)
set(standards_package holstandardinfra-standards)

hol_install_library(lib/${CMAKE_LIBRARY_ARCHITECTURE} deb- EXCLUDE_FROM_ALL)
hol_install_the_rest(deb- EXCLUDE_FROM_ALL)
hol_install_documents(deb- ${tool_package} ${development_package} EXCLUDE_FROM_ALL)
# Below /usr the loader finds the library by itself.
install(CODE "file(RPATH_REMOVE
    FILE \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/holstd\")"
  COMPONENT deb-tool EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL deb-runtime deb-development deb-tool deb-standards)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_NAME holstandardinfra)
set(CPACK_PACKAGE_VENDOR "HolStandardInfra maintainers")
set(CPACK_PACKAGE_CONTACT "HolStandardInfra maintainers <maintainers@hol-standard.example>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/lib)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# Without a LICENSE of the sources a package says that it grants nothing.
if(EXISTS ${PROJECT_SOURCE_DIR}/LICENSE)
  file(READ ${PROJECT_SOURCE_DIR}/LICENSE license)
else()
  set(license "All rights reserved. The maintainers say who may use, copy and change this.")
endif()
string(STRIP "${license}" license)
string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
string(REPLACE "\n" "\n " license "${license}")
configure_file(cmake/copyright.in ${PROJECT_BINARY_DIR}/copyright @ONLY)

# Each package has a summary of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(about "HolStandardInfra keeps the drafting standards of mechanical drawings (ISO,
JIS, ANSI, ASME and what sites derive from them) as typed trees, edits
them by path commands, stores them as XML and upgrades those of every
older version.
")
set(full_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})

# hol_package(PACKAGE COMPONENT SECTION DEPENDS SUMMARY DESCRIPTION): what is said of a package. The
# libraries that its programs load are found when it is made.
macro(hol_package package component section depends summary description)
  string(TOUPPER ${component} key)
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_COMPONENT_${key}_DESCRIPTION
    "drafting standards of mechanical drawings: ${summary}\n${about}\n${description}")
  install(FILES ${PROJECT_BINARY_DIR}/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

hol_package(${runtime_package} deb-runtime libs
  "${standards_package} (>= ${PROJECT_VERSION})"
  "shared library"
  "This package holds the library that programs load.")
hol_package(${development_package} deb-development libdevel
  "${runtime_package} (= ${full_version})"
  "development files"
  "This package holds the headers, what find_package and pkg-config read, and
the example of a module.")
set(CPACK_DEBIAN_DEB-DEVELOPMENT_PACKAGE_SUGGESTS ${tool_package})
hol_package(${tool_package} deb-tool graphics
  "${runtime_package} (>= ${PROJECT_VERSION})"
  "command line tool"
  "This package holds holstd, which converts, upgrades, edits and checks
standards and answers questions about them, and the documents.")
set(CPACK_DEBIAN_DEB-TOOL_PACKAGE_SUGGESTS bash-completion)
hol_package(${standards_package} deb-standards graphics
  ""
  "ISO, JIS, ANSI and ASME"
  "This package holds the shipped standards as XML, and the text standards that
they are made from.")
set(CPACK_DEBIAN_DEB-STANDARDS_PACKAGE_ARCHITECTURE all)

include(CPack)
