# Registers the install-and-consume test: installs this build into a prefix of
# its own, then configures, builds and runs tests/package/consumer against it.
add_test(NAME package.InstallAndConsume
  COMMAND ${CMAKE_COMMAND}
    -DBUILD_DIR=${PROJECT_BINARY_DIR}
    -DWORK_DIR=${CMAKE_CURRENT_BINARY_DIR}/package
    -DCONSUMER_DIR=${CMAKE_CURRENT_LIST_DIR}/consumer
    -DCXX_COMPILER=${CMAKE_CXX_COMPILER}
    -DBUILD_TYPE=${CMAKE_BUILD_TYPE}
    -DSANITIZE=${REFPROP_SANITIZE}
    -P ${CMAKE_CURRENT_LIST_DIR}/InstallAndConsume.cmake)
set_tests_properties(package.InstallAndConsume PROPERTIES TIMEOUT 600 LABELS package)
