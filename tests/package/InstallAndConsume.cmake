# Installs the build the way a user gets it, then uses what was installed:
#   MODE=install: `cmake --install` into a fresh prefix;
#   MODE=deb:     `cpack -G DEB`, then `dpkg-deb -x` into a scratch root (prefix <root>/usr).
# Then: the installed files are where they belong and the test hooks are not; the installed
# refpage runs with no library path set (--version, show, check on generated pages); and the
# consumer in CONSUMER_DIR builds and runs twice, through find_package and through pkg-config.
# Run with -P; takes MODE, BUILD_DIR, WORK_DIR, CONSUMER_DIR, CXX_COMPILER, BUILD_TYPE, SANITIZE,
# LIBDIR, PAGEGEN, VERSION.
foreach(variable MODE BUILD_DIR WORK_DIR CONSUMER_DIR CXX_COMPILER LIBDIR PAGEGEN VERSION)
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
file(MAKE_DIRECTORY ${WORK_DIR})
if(MODE STREQUAL "install")
  set(prefix ${WORK_DIR}/prefix)
  run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
elseif(MODE STREQUAL "deb")
  execute_process(COMMAND cpack -G DEB --config ${BUILD_DIR}/CPackConfig.cmake
    WORKING_DIRECTORY ${WORK_DIR} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  file(GLOB packages ${WORK_DIR}/*.deb)
  list(LENGTH packages count)
  if(NOT result EQUAL 0 OR NOT count EQUAL 1)
    message(FATAL_ERROR "InstallAndConsume: cpack made ${count} packages (${result}):\n${output}")
  endif()
  execute_process(COMMAND dpkg-deb --field ${packages} Package Version Depends OUTPUT_VARIABLE fields)
  message(STATUS "package ${packages}:\n${fields}")
  if(NOT fields MATCHES "Depends: [^\n]*libstdc\\+\\+6")
    message(FATAL_ERROR "InstallAndConsume: the package lists no library dependencies:\n${fields}")
  endif()
  run(dpkg-deb -x ${packages} ${WORK_DIR}/root)
  set(prefix ${WORK_DIR}/root/usr)
else()
  message(FATAL_ERROR "InstallAndConsume: MODE is install or deb, not ${MODE}")
endif()

# What a user finds, and what must not be there.
set(expected bin/refpage ${LIBDIR}/libreference_property.so ${LIBDIR}/pkgconfig/reference_property.pc
  ${LIBDIR}/cmake/reference_property/reference_propertyConfig.cmake include/reference/property/Version.hpp
  include/reference/property/RefItem.hpp include/ovrin/array.hpp share/man/man1/refpage.1.gz
  share/doc/reference-property/LICENSE)
foreach(file IN LISTS expected)
  if(NOT EXISTS ${prefix}/${file})
    message(FATAL_ERROR "InstallAndConsume: ${file} is not installed")
  endif()
endforeach()
file(GLOB_RECURSE hooks RELATIVE ${prefix} ${prefix}/*testing.hpp ${prefix}/*pagegen* ${prefix}/*refpage_pages*)
if(hooks)
  message(FATAL_ERROR "InstallAndConsume: installed what is for the project's own tests: ${hooks}")
endif()

# The installed tool, found through its RPATH alone.
set(tool ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${prefix}/bin/refpage)
execute_process(COMMAND ${tool} --version RESULT_VARIABLE result OUTPUT_VARIABLE version_text ERROR_QUIET)
execute_process(COMMAND ${tool} --help OUTPUT_VARIABLE help_text)
if(help_text MATCHES "--version" AND (NOT result EQUAL 0 OR NOT version_text MATCHES "${VERSION}"))
  message(FATAL_ERROR "InstallAndConsume: refpage --version said (${result}) ${version_text}")
elseif(NOT help_text MATCHES "--version")
  message(STATUS "refpage has no --version yet")
endif()
run(${PAGEGEN} --seed 12 --pages 24 -o ${WORK_DIR}/pages)
run(${tool} check ${WORK_DIR}/pages)
execute_process(COMMAND ${tool} show RESULT_VARIABLE result OUTPUT_QUIET)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "InstallAndConsume: the installed refpage show failed (${result})")
endif()

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()

# Consumer through find_package.
run(${CMAKE_COMMAND} -S ${CONSUMER_DIR} -B ${WORK_DIR}/build
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_BUILD_TYPE=${BUILD_TYPE}
  -DCMAKE_CXX_FLAGS=${flags} -DCMAKE_EXE_LINKER_FLAGS=${flags})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)

# Consumer through pkg-config, compiled and linked by hand.
set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
execute_process(COMMAND pkg-config --cflags --libs reference_property
  RESULT_VARIABLE result OUTPUT_VARIABLE pc_flags OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "InstallAndConsume: pkg-config does not know reference_property (${result})")
endif()
separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX_COMPILER} -std=c++20 ${flags} ${CONSUMER_DIR}/main.cpp ${pc_flags}
  -Wl,-rpath,${prefix}/${LIBDIR} -o ${WORK_DIR}/pkgconfig-consumer)
run(${WORK_DIR}/pkgconfig-consumer)
