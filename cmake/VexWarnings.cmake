# Warning flags shared by every target of the project.
function(vex_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  if(VEX_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  # GCC 12 reports -Wmaybe-uninitialized inside std::function, std::regex and std::variant when
  # sanitizers instrument the code at -O1; the same code is clean in the ordinary builds, which
  # keep the warning.
  if(VEX_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
  endif()
endfunction()
