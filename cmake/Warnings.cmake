# Strict warnings on the project's own targets; errors unless REFPROP_WERROR is off.
function(refprop_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  if(REFPROP_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
