# Installs the build the way a user gets it, then uses what was installed:
#   MODE=install: `cmake --install` into a fresh prefix;
#   MODE=deb:     `cpack -G DEB` into WORK_DIR, the three packages checked (names, sections,
#                 dependencies, what each holds, binaries stripped with their debug files in the
#                 -dbgsym packages; package.Lintian checks the rest that Debian asks for), then
#                 unpacked with `dpkg-deb -x` into two scratch roots: the runtime and the tool
#                 (what a user of refpage installs), the runtime and the development package
#                 (what a program that links the library installs).
# Then the installed refpage runs with no library path set (--version, show, check on generated
# pages), and the consumer in CONSUMER_DIR builds and runs twice, through find_package and through
# pkg-config, against the installed development files; with the packages, every header they
# include from outside comes from the development package's dependencies or the compiler.
# Run with -P; takes MODE, BUILD_DIR, WORK_DIR, CONSUMER_DIR, CPACK, CXX_COMPILER, BUILD_TYPE,
# SANITIZE, LIBDIR, PAGEGEN, VERSION, CHANGELOG (cmake/debian/changelog).
cmake_minimum_required(VERSION 3.25)
foreach(variable MODE BUILD_DIR WORK_DIR CONSUMER_DIR CPACK CXX_COMPILER LIBDIR PAGEGEN VERSION CHANGELOG)
  if(NOT ${variable})
    message(FATAL_ERROR "InstallAndConsume: ${variable} is required")
  endif()
endforeach()

function(fail)
  string(JOIN "" text ${ARGN})
  message(FATAL_ERROR "InstallAndConsume: ${text}")
endfunction()

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    string(REPLACE ";" " " command "${ARGN}")
    fail("failed (${result}): ${command}")
  endif()
endfunction()

# The value of `field` in the control file of `package`.
function(deb_field package field out)
  execute_process(COMMAND dpkg-deb --field ${package} ${field} OUTPUT_VARIABLE value
    OUTPUT_STRIP_TRAILING_WHITESPACE RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    fail("dpkg-deb --field ${package} ${field} failed (${result})")
  endif()
  set(${out} "${value}" PARENT_SCOPE)
endfunction()

# The files and links (not folders) that `package` installs, as paths under /, without the "./".
function(deb_files package out)
  execute_process(COMMAND dpkg-deb --fsys-tarfile ${package} COMMAND tar -t
    OUTPUT_VARIABLE listing RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    fail("cannot list ${package} (${result})")
  endif()
  string(REGEX REPLACE "(^|\n)\\./" "\\1" listing "${listing}")
  string(REGEX REPLACE "[^\n]*/\n" "" listing "${listing}")
  string(REGEX REPLACE "\n$" "" listing "${listing}")
  string(REPLACE "\n" ";" files "${listing}")
  list(FILTER files EXCLUDE REGEX "^$")
  set(${out} "${files}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
if(MODE STREQUAL "install")
  set(prefix ${WORK_DIR}/prefix)
  run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
  set(tool_prefix ${prefix})
elseif(MODE STREQUAL "deb")
  execute_process(COMMAND ${CPACK} -G DEB --config ${BUILD_DIR}/CPackConfig.cmake
    WORKING_DIRECTORY ${WORK_DIR} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  file(GLOB packages ${WORK_DIR}/*.deb)
  list(LENGTH packages count)
  if(NOT result EQUAL 0 OR NOT count EQUAL 3 OR output MATCHES "CMake Error")
    fail("cpack made ${count} packages, not 3 (${result}):\n${output}")
  endif()

  # Which package is which, by its section.
  set(section_runtime libs)
  set(section_development libdevel)
  set(section_tool utils)
  foreach(package IN LISTS packages)
    deb_field(${package} Section section)
    deb_field(${package} Package name)
    deb_field(${package} Depends depends)
    deb_field(${package} Version package_version)
    message(STATUS "${name} (${section}) ${package_version}: Depends: ${depends}")
    if(NOT package_version STREQUAL VERSION)
      fail("${name} has version ${package_version}, not ${VERSION}")
    endif()
    foreach(role IN ITEMS runtime development tool)
      if(section STREQUAL section_${role})
        set(${role} ${package})
        set(${role}_name ${name})
        set(${role}_depends "${depends}")
      endif()
    endforeach()
  endforeach()
  if(NOT runtime OR NOT development OR NOT tool)
    fail("no package of each section libs, libdevel and utils")
  endif()

  # The runtime's name ends in its libraries' SOVERSION (checked with what it holds, below), and
  # the others need it at their own version.
  if(NOT runtime_name MATCHES "^libreference-property([0-9]+)$")
    fail("the runtime package ${runtime_name} is not named libreference-property<SOVERSION>")
  endif()
  set(soversion ${CMAKE_MATCH_1})
  foreach(role IN ITEMS development tool)
    string(FIND "${${role}_depends}" "${runtime_name} (= ${VERSION})" at)
    if(at LESS 0)
      fail("${${role}_name} does not depend on ${runtime_name} (= ${VERSION}): ${${role}_depends}")
    endif()
  endforeach()
  if(NOT runtime_depends MATCHES "libstdc\\+\\+6")
    fail("${runtime_name} lists no library dependencies: ${runtime_depends}")
  endif()
  file(STRINGS ${CHANGELOG} changelog_top LIMIT_COUNT 1)
  if(NOT changelog_top MATCHES "^reference-property \\(${VERSION}\\) ")
    fail("the latest entry of cmake/debian/changelog is not for ${VERSION}: ${changelog_top}")
  endif()

  # What each package holds: the runtime nothing to build with, the others no libraries.
  set(own_runtime "usr/${LIBDIR}/lib[a-z_]+\\.so\\.${soversion}(\\.[0-9]+)*")
  set(own_development "usr/(include/.+|${LIBDIR}/lib[a-z_]+\\.so|${LIBDIR}/(cmake|pkgconfig)/.+)")
  set(own_tool "usr/(bin/refpage|share/man/man1/refpage\\.1\\.gz)")
  foreach(role IN ITEMS runtime development tool)
    deb_files(${${role}} files)
    foreach(file IN LISTS files)
      if(NOT file MATCHES "^(${own_${role}}|usr/share/doc/${${role}_name}/(copyright|changelog\\.gz))$")
        fail("${${role}_name} holds ${file}")
      endif()
    endforeach()
  endforeach()

  foreach(role IN ITEMS runtime development tool)
    run(dpkg-deb -x ${${role}} ${WORK_DIR}/${role})
  endforeach()
  run(dpkg-deb -x ${runtime} ${WORK_DIR}/root-tool)
  run(dpkg-deb -x ${tool} ${WORK_DIR}/root-tool)
  run(dpkg-deb -x ${runtime} ${WORK_DIR}/root)
  run(dpkg-deb -x ${development} ${WORK_DIR}/root)
  set(prefix ${WORK_DIR}/root/usr)
  set(tool_prefix ${WORK_DIR}/root-tool/usr)

  # Stripped, each binary's debug file in the -dbgsym package of its package, by build ID.
  file(GLOB debug_packages ${WORK_DIR}/*-dbgsym_*.ddeb)
  set(debug_files "")
  foreach(package IN LISTS debug_packages)
    deb_files(${package} files)
    list(APPEND debug_files ${files})
  endforeach()
  file(GLOB binaries ${WORK_DIR}/runtime/usr/${LIBDIR}/*.so.*.*.* ${WORK_DIR}/tool/usr/bin/*)
  list(LENGTH binaries count)
  if(NOT count EQUAL 4)
    fail("not four binaries (refpage and three libraries) in the packages: ${binaries}")
  endif()
  foreach(binary IN LISTS binaries)
    execute_process(COMMAND readelf --wide --sections --notes ${binary} OUTPUT_VARIABLE elf)
    if(elf MATCHES "\\.symtab|\\.debug_info")
      fail("${binary} is not stripped")
    endif()
    if(NOT elf MATCHES "Build ID: ([0-9a-f][0-9a-f])([0-9a-f]+)")
      fail("${binary} has no build ID")
    endif()
    if(NOT "usr/lib/debug/.build-id/${CMAKE_MATCH_1}/${CMAKE_MATCH_2}.debug" IN_LIST debug_files)
      fail("${binary} has no debug file in the -dbgsym packages")
    endif()
  endforeach()
else()
  fail("MODE is install or deb, not ${MODE}")
endif()

if(MODE STREQUAL "install")
  # What a user finds, and what must not be there.
  set(expected bin/refpage ${LIBDIR}/libreference_property.so ${LIBDIR}/pkgconfig/reference_property.pc
    ${LIBDIR}/cmake/reference_property/reference_propertyConfig.cmake include/reference/property/Version.hpp
    include/reference/property/RefItem.hpp include/ovrin/array.hpp share/man/man1/refpage.1.gz
    share/doc/reference-property/LICENSE)
  foreach(file IN LISTS expected)
    if(NOT EXISTS ${prefix}/${file})
      fail("${file} is not installed")
    endif()
  endforeach()
endif()
file(GLOB_RECURSE hooks RELATIVE ${WORK_DIR} ${WORK_DIR}/*testing.hpp ${WORK_DIR}/*pagegen* ${WORK_DIR}/*librefpage_* ${WORK_DIR}/*/refpage/format/*)
if(hooks)
  fail("installed what is for the project's own tests: ${hooks}")
endif()

# The installed tool, found through its RPATH alone.
set(tool ${CMAKE_COMMAND} -E env --unset=LD_LIBRARY_PATH ${tool_prefix}/bin/refpage)
execute_process(COMMAND ${tool} --version RESULT_VARIABLE result OUTPUT_VARIABLE version_text ERROR_QUIET)
if(NOT result EQUAL 0 OR NOT version_text MATCHES "${VERSION}")
  fail("refpage --version said (${result}) ${version_text}")
endif()
run(${PAGEGEN} --seed 12 --pages 24 -o ${WORK_DIR}/pages)
run(${tool} check ${WORK_DIR}/pages)
execute_process(COMMAND ${tool} show RESULT_VARIABLE result OUTPUT_QUIET)
if(NOT result EQUAL 0)
  fail("the installed refpage show failed (${result})")
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
  fail("pkg-config does not know reference_property (${result})")
endif()
separate_arguments(pc_flags UNIX_COMMAND "${pc_flags}")
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX_COMPILER} -std=c++20 ${flags} ${CONSUMER_DIR}/main.cpp ${pc_flags}
  -Wl,-rpath,${prefix}/${LIBDIR} -o ${WORK_DIR}/pkgconfig-consumer)
run(${WORK_DIR}/pkgconfig-consumer)

if(NOT MODE STREQUAL "deb")
  return()
endif()

# Every header that the installed headers include from outside the packages is the compiler's
# own (the standard library's and the C library's, which a C++20 compiler brings) or belongs to a
# package that the development package depends on, directly or through others.
function(included_files source out)
  execute_process(COMMAND ${CXX_COMPILER} -std=c++20 -M -I${prefix}/include ${source}
    OUTPUT_VARIABLE rule RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    fail("the installed headers do not compile together (${result})")
  endif()
  string(REGEX REPLACE "^[^:]*:" "" rule "${rule}")
  string(REGEX REPLACE "[ \\\\\n]+" ";" files "${rule}")
  list(FILTER files INCLUDE REGEX "^/")
  list(FILTER files EXCLUDE REGEX "^${WORK_DIR}/")
  set(real "")
  foreach(file IN LISTS files)
    file(REAL_PATH ${file} file)
    list(APPEND real ${file})
  endforeach()
  list(REMOVE_DUPLICATES real)
  set(${out} "${real}" PARENT_SCOPE)
endfunction()
file(GLOB_RECURSE headers RELATIVE ${prefix}/include ${prefix}/include/*.hpp)
list(TRANSFORM headers REPLACE "(.+)" "#include <\\1>\n")
string(JOIN "" text ${headers})
file(WRITE ${WORK_DIR}/headers.cpp "${text}")
file(WRITE ${WORK_DIR}/standard.cpp "#include <bits/stdc++.h>\n")
# The packages that own `files`, in <out>.
function(owners_of files out)
  execute_process(COMMAND dpkg-query --search ${files} OUTPUT_VARIABLE found RESULT_VARIABLE result)
  if(NOT result EQUAL 0)
    fail("no package owns some of the headers the installed ones include:\n${files}")
  endif()
  string(REGEX MATCHALL "(^|\n)[^:,\n]+" owners "${found}")
  list(TRANSFORM owners STRIP)
  list(REMOVE_DUPLICATES owners)
  set(${out} "${owners}" PARENT_SCOPE)
endfunction()
included_files(${WORK_DIR}/headers.cpp used)
included_files(${WORK_DIR}/standard.cpp standard)
list(REMOVE_ITEM used ${standard})
owners_of("${standard}" compiler_packages)
set(owners "")
if(used)
  owners_of("${used}" owners)
  list(REMOVE_ITEM owners ${compiler_packages})
endif()
# The dependencies of the development package, and theirs, as installed here.
deb_field(${development} Depends reached)
set(closure "")
while(reached)
  string(REGEX REPLACE "\\([^)]*\\)|:any|\\|" "," reached "${reached}")
  string(REGEX REPLACE "[ \t\n]*,[ \t\n,]*" ";" reached "${reached}")
  list(FILTER reached EXCLUDE REGEX "^$")
  list(REMOVE_DUPLICATES reached)
  list(REMOVE_ITEM reached ${closure} ${runtime_name})
  if(NOT reached)
    break()
  endif()
  list(APPEND closure ${reached})
  execute_process(COMMAND dpkg-query --show "--showformat=\${Depends}, \${Pre-Depends},\n" ${reached}
    OUTPUT_VARIABLE reached ERROR_QUIET)
endwhile()
foreach(owner IN LISTS owners)
  if(NOT owner IN_LIST closure)
    list(JOIN closure ", " closure)
    fail("the installed headers include headers of ${owner}, which ${development_name} does not depend on, "
      "directly or not (it depends on ${runtime_name}, and on: ${closure})")
  endif()
endforeach()
message(STATUS "headers from outside the packages: ${owners}")
