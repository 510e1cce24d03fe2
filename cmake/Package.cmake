# `cpack -G DEB` in a build folder makes one Debian package of each install component
# (cmake/Install.cmake), under /usr, in the folder cpack runs in:
#   libreference-property<SOVERSION>  runtime:     the three shared libraries (their SONAMEs change
#                                                  together, with the project's major version);
#   libreference-property-dev         development: headers, linker links, CMake and pkg-config files;
#                                                  depends on the runtime of the same version and on
#                                                  Boost's headers, which the public headers include;
#   refpage                           tool:        the tool and its man page; depends on the runtime.
# Each package has its copyright file and changelog (cmake/debian/); binaries are stripped, their
# debug information going to <package>-dbgsym .ddeb packages, keyed by build ID. Library
# dependencies are found by dpkg-shlibdeps, the project's own libraries in the build tree.
# docs/packaging.md says how to build, check and install them.
set(REFPROP_DEB_MAINTAINER "Seed 9c8c14d6 maintainers <maintainers@users.noreply.c-seed-9c8c14d6.example>"
  CACHE STRING "Maintainer of the Debian packages, as \"Name <address>\"")
set(REFPROP_DEB_RUNTIME libreference-property${PROJECT_VERSION_MAJOR})
set(REFPROP_DEB_DEVELOPMENT libreference-property-dev)
set(REFPROP_DEB_TOOL refpage)

set(CPACK_PACKAGE_NAME reference-property)
set(CPACK_PACKAGE_VENDOR "the reference_property authors")
set(CPACK_PACKAGE_CONTACT "${REFPROP_DEB_MAINTAINER}")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET refpage)
  list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)
set(CPACK_COMPONENT_TOOL_DEPENDS runtime)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)  # "<runtime> (= <version>)"

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${REFPROP_DEB_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SOURCE reference-property)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/host ${PROJECT_BINARY_DIR}/utils)
set(CPACK_DEBIAN_DEBUGINFO_PACKAGE ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE gzip)  # xz takes five times as long; cmake/debian/FinishPackages.cmake uses it too
set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/FinishPackages.cmake)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${REFPROP_DEB_RUNTIME})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# The shlibs file: a program linked against these libraries depends on this version or later.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "data model of documentation reference pages - libraries
The records of one documentation reference page, as a C++20 library usable
natively and through a host's class object system.
.
This package contains the shared libraries: libreference_property, the
stand-in host runtime libovrin_host and the shared property utilities
libreference_utils.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${REFPROP_DEB_DEVELOPMENT})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# The public headers include Boost's (boost/intrusive_ptr.hpp); the CMake package finds Boost.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libboost-dev (>= 1.74)")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "data model of documentation reference pages - development files
The records of one documentation reference page, as a C++20 library usable
natively and through a host's class object system.
.
This package contains what building against the libraries needs: the headers,
the CMake package (find_package(reference_property)) and the pkg-config file
reference_property.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${REFPROP_DEB_TOOL})
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "show, convert, check and search documentation reference pages
refpage reads documentation reference pages written as JSON through the
reference_property library. It prints a page for a person to read or as
canonical JSON, checks pages one by one and as a set, looks names up, and
writes a lookup index, a static HTML site or an offline docset of the pages.")

# Each package's copyright file and changelog, installed only by a component install.
# The copyright file holds the licence: its copyright line, then its text as a field's lines.
file(READ ${PROJECT_SOURCE_DIR}/LICENSE REFPROP_LICENCE_TEXT)
if(NOT REFPROP_LICENCE_TEXT MATCHES "\nCopyright \\(c\\) ([^\n]+)\n+(.*)$")
  message(FATAL_ERROR "LICENSE has no line \"Copyright (c) ...\" before its text")
endif()
set(REFPROP_COPYRIGHT "${CMAKE_MATCH_1}")
string(STRIP "${CMAKE_MATCH_2}" REFPROP_LICENCE_TEXT)
string(REPLACE "\n\n" "\n.\n" REFPROP_LICENCE_TEXT "${REFPROP_LICENCE_TEXT}")
string(REPLACE "\n" "\n " REFPROP_LICENCE_TEXT " ${REFPROP_LICENCE_TEXT}")
configure_file(cmake/debian/copyright.in ${PROJECT_BINARY_DIR}/debian/copyright @ONLY)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/LICENSE
  ${PROJECT_SOURCE_DIR}/cmake/debian/changelog)
execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/cmake/debian/changelog
  OUTPUT_FILE ${PROJECT_BINARY_DIR}/debian/changelog.gz RESULT_VARIABLE REFPROP_GZIP_STATUS)
if(NOT REFPROP_GZIP_STATUS EQUAL 0)
  message(FATAL_ERROR "gzip of cmake/debian/changelog failed (${REFPROP_GZIP_STATUS})")
endif()
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} COMPONENT)
  install(FILES ${PROJECT_BINARY_DIR}/debian/copyright ${PROJECT_BINARY_DIR}/debian/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
