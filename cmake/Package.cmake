# `cpack -G DEB` in a build folder makes a Debian package of what cmake/Install.cmake
# installs, under /usr, in the folder cpack runs in. Its library dependencies are found by
# dpkg-shlibdeps; the project's own libraries are found in the build tree.
set(CPACK_PACKAGE_NAME reference-property)
set(CPACK_PACKAGE_VENDOR "the reference_property authors")
set(CPACK_PACKAGE_CONTACT "the reference_property authors <reference-property@localhost>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "data model of documentation reference pages, and the refpage tool")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${CPACK_PACKAGE_CONTACT}")
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "data model of documentation reference pages, and the refpage tool
 A C++20 shared library holding the records of one documentation reference page,
 usable natively and through a host's class object system, with a stand-in host
 runtime and shared property utilities; headers, a CMake package and a pkg-config
 file for building against it; and refpage, which shows, converts, checks and
 searches pages written as JSON.")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/host ${PROJECT_BINARY_DIR}/utils)
# The installed headers include Boost's; the CMake package looks for it.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libboost-dev (>= 1.74)")

include(CPack)
