# Installs the build into a fresh prefix, then configures, builds and runs the
# consumer project against it.
# Run with -P; takes BUILD_DIR, WORK_DIR, CONSUMER_DIR, CXX_COMPILER, BUILD_TYPE, SANITIZE.
foreach(variable BUILD_DIR WORK_DIR CONSUMER_DIR CXX_COMPILER)
  if(NOT ${variable})
    message(FATAL_ERROR "InstallAndConsume: ${variable} is required")
  endif()
endforeach()

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "InstallAndConsume: failed (${result}): ${command}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
  -DCMAKE_CXX_FLAGS=${flags} -DCMAKE_EXE_LINKER_FLAGS=${flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
