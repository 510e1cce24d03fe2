# Installs headers, the three shared libraries and a CMake package, so that
# find_package(reference_property) and linking reference::property works elsewhere.
include(CMakePackageConfigHelpers)

# Installed libraries find each other beside themselves, wherever the prefix is.
set_target_properties(reference_property reference_utils ovrin_host PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS reference_property reference_utils ovrin_host
  EXPORT reference_propertyTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/ host/include/ utils/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT reference_propertyTargets
  NAMESPACE reference::
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/reference_property)
configure_package_config_file(cmake/reference_propertyConfig.cmake.in
  ${PROJECT_BINARY_DIR}/reference_propertyConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/reference_property)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/reference_propertyConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/reference_propertyConfig.cmake
  ${PROJECT_BINARY_DIR}/reference_propertyConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/reference_property)
