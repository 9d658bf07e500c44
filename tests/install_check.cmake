# Installs the built package into a scratch prefix, then configures, builds and runs an example
# project against it with find_package(VexCommon): VEX_EXAMPLE (default the README's
# examples/consumer), whose output must match VEX_EXPECT.
if(NOT VEX_EXAMPLE)
  set(VEX_EXAMPLE consumer)
  set(VEX_EXPECT "a=1;b=2")
endif()
file(REMOVE_RECURSE "${VEX_WORK_DIR}")
set(prefix "${VEX_WORK_DIR}/prefix")

function(run_step)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "step failed (${rc}): ${ARGN}\n${out}\n${err}")
  endif()
  set(step_output "${out}" PARENT_SCOPE)
endfunction()

run_step("${CMAKE_COMMAND}" --install "${VEX_BINARY_DIR}" --prefix "${prefix}")
run_step("${CMAKE_COMMAND}" -S "${VEX_SOURCE_DIR}/examples/${VEX_EXAMPLE}"
         -B "${VEX_WORK_DIR}/build" -G Ninja "-DCMAKE_PREFIX_PATH=${prefix}")
run_step("${CMAKE_COMMAND}" --build "${VEX_WORK_DIR}/build")
run_step("${VEX_WORK_DIR}/build/${VEX_EXAMPLE}")
message(STATUS "consumer printed: ${step_output}")
if(NOT step_output MATCHES "${VEX_EXPECT}")
  message(FATAL_ERROR "unexpected output from the example: ${step_output}")
endif()
