# Warning flags shared by every target of the project.
function(vex_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(VEX_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
