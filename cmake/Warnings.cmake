# Strict warnings on the project's own targets; errors unless REFPROP_WERROR is off.
function(refprop_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  # GCC 12's -Wrestrict reports overlapping copies inside std::string's own operator+
  # ("text" + std::string) when optimising (GCC bug 105651): a false positive in the
  # standard library, so it is not an error there.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(REFPROP_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
