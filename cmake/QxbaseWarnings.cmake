# Warnings for the project's own targets (not for consumers of the installed package).
function(qx_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor)
  if(QXBASE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
