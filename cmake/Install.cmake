# What `cmake --install` puts in a prefix, in three components (cmake/Package.cmake makes one
# Debian package of each):
#   runtime:     the shared libraries reference_property, reference_utils and ovrin_host (the
#                stand-in host runtime), their SONAME links;
#   development: their public headers, with the generated reference/property/Version.hpp; the
#                linker's links lib*.so; a CMake package (reference::property, reference::utils,
#                reference::host) and a pkg-config file;
#   tool:        bin/refpage and its man page refpage.1.gz (made by cmake/ManPage.cmake from the
#                built tool's --help).
# A whole install adds the licence under share/doc/reference-property; each package carries it as
# its copyright file instead, with the changelog (cmake/debian/), installed only by a component
# install, which is what cpack does.
# Not installed: the page library and the glue (static, built for the tool, tests, benchmarks and
# fuzzers), the host's test hooks, the page generator.
include(CMakePackageConfigHelpers)

set(REFPROP_INSTALLED_LIBRARIES reference_property reference_utils ovrin_host)
# Installed libraries find each other beside themselves, and the tool finds them beside its own
# folder, wherever the prefix is.
set_target_properties(${REFPROP_INSTALLED_LIBRARIES} PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(ovrin_host PROPERTIES EXPORT_NAME host)
set_target_properties(reference_utils PROPERTIES EXPORT_NAME utils)
set_target_properties(reference_property PROPERTIES EXPORT_NAME property)

install(TARGETS ${REFPROP_INSTALLED_LIBRARIES}
  EXPORT reference_propertyTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ host/include/ utils/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT development)
install(FILES ${REFPROP_VERSION_HEADER} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/reference/property
  COMPONENT development)

install(EXPORT reference_propertyTargets
  NAMESPACE reference::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/reference_property
  COMPONENT development)
configure_package_config_file(cmake/reference_propertyConfig.cmake.in
  ${PROJECT_BINARY_DIR}/reference_propertyConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/reference_property)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/reference_propertyConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/reference_propertyConfig.cmake
  ${PROJECT_BINARY_DIR}/reference_propertyConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/reference_property
  COMPONENT development)

# pkg-config: the prefix is found from the .pc file's own place, so the tree can move.
file(RELATIVE_PATH REFPROP_PC_TO_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" REFPROP_PC_TO_PREFIX "${REFPROP_PC_TO_PREFIX}")
configure_file(cmake/reference_property.pc.in ${PROJECT_BINARY_DIR}/reference_property.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/reference_property.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

# The licence of a whole install; no package has this component.
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/reference-property COMPONENT licence)

if(TARGET refpage)
  file(RELATIVE_PATH REFPROP_BIN_TO_LIB /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(refpage PROPERTIES INSTALL_RPATH "$ORIGIN/${REFPROP_BIN_TO_LIB}")
  install(TARGETS refpage RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)

  # The man page: what `refpage --help` and every command's --help say, as roff, with the
  # sections --help lacks from cmake/refpage-man.roff; compressed as Debian wants it.
  set(REFPROP_MAN_PAGE ${PROJECT_BINARY_DIR}/man/refpage.1)
  set(REFPROP_MAN_EXTRA ${PROJECT_SOURCE_DIR}/cmake/refpage-man.roff)
  add_custom_command(OUTPUT ${REFPROP_MAN_PAGE} ${REFPROP_MAN_PAGE}.gz
    COMMAND ${CMAKE_COMMAND} -DTOOL=$<TARGET_FILE:refpage>
      "-DNAME=show, convert, check and search documentation reference pages" -DVERSION=${PROJECT_VERSION}
      -DEXTRA=${REFPROP_MAN_EXTRA} -DOUTPUT=${REFPROP_MAN_PAGE} -P ${PROJECT_SOURCE_DIR}/cmake/ManPage.cmake
    COMMAND gzip -9nkf ${REFPROP_MAN_PAGE}
    DEPENDS refpage ${PROJECT_SOURCE_DIR}/cmake/ManPage.cmake ${REFPROP_MAN_EXTRA}
    COMMENT "Writing the man page refpage.1 from refpage --help"
    VERBATIM)
  add_custom_target(refpage_man ALL DEPENDS ${REFPROP_MAN_PAGE} ${REFPROP_MAN_PAGE}.gz)
  install(FILES ${REFPROP_MAN_PAGE}.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
endif()
