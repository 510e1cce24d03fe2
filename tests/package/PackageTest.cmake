# The package tests (label package):
#   package.InstallAndConsume  this build installed into a prefix of its own;
#   package.DebianPackages     made into the three Debian packages and unpacked into scratch roots;
# each time the installed tool runs and tests/package/consumer builds against the installed files,
# through find_package and pkg-config (InstallAndConsume.cmake);
#   package.Lintian            lintian on those packages (Lintian.cmake);
#   package.ManPage            the man page's sections, width in man, and examples (CheckManPage.cmake).
foreach(mode IN ITEMS install deb)
  if(mode STREQUAL "install")
    set(name package.InstallAndConsume)
  else()
    set(name package.DebianPackages)
  endif()
  add_test(NAME ${name}
    COMMAND ${CMAKE_COMMAND}
      -DMODE=${mode}
      -DBUILD_DIR=${PROJECT_BINARY_DIR}
      -DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/package-${mode}
      -DCONSUMER_DIR=${CMAKE_CURRENT_LIST_DIR}/consumer
      -DCPACK=${CMAKE_CPACK_COMMAND}
      -DCXX_COMPILER=${CMAKE_CXX_COMPILER}
      -DBUILD_TYPE=${CMAKE_BUILD_TYPE}
      -DSANITIZE=${REFPROP_SANITIZE}
      -DLIBDIR=${CMAKE_INSTALL_LIBDIR}
      -DPAGEGEN=$<TARGET_FILE:pagegen>
      -DVERSION=${PROJECT_VERSION}
      -DCHANGELOG=${PROJECT_SOURCE_DIR}/cmake/debian/changelog
      -P ${CMAKE_CURRENT_LIST_DIR}/InstallAndConsume.cmake)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 LABELS package)
endforeach()
set_tests_properties(package.DebianPackages PROPERTIES FIXTURES_SETUP debian_packages)

add_test(NAME package.Lintian
  COMMAND ${CMAKE_COMMAND} -DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/package-deb
    -DDOCS=${PROJECT_SOURCE_DIR}/docs/packaging.md -DSANITIZE=${REFPROP_SANITIZE}
    -P ${CMAKE_CURRENT_LIST_DIR}/Lintian.cmake)
set_tests_properties(package.Lintian PROPERTIES TIMEOUT 300 LABELS package
  FIXTURES_REQUIRED debian_packages SKIP_REGULAR_EXPRESSION "-- skipped: ")

# The page is written by cmake/Install.cmake, included after the tests.
add_test(NAME package.ManPage
  COMMAND ${CMAKE_COMMAND} -DMAN_PAGE=${PROJECT_BINARY_DIR}/man/refpage.1 -DTOOL=$<TARGET_FILE:refpage>
    -DPAGEGEN=$<TARGET_FILE:pagegen> -DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/package-man
    -P ${CMAKE_CURRENT_LIST_DIR}/CheckManPage.cmake)
set_tests_properties(package.ManPage PROPERTIES TIMEOUT 300 LABELS package)
