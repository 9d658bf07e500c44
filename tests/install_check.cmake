# Installs the built package into a scratch prefix, then configures, builds and runs the
# README's example project (examples/consumer) against it with find_package(VexCommon).
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
run_step("${CMAKE_COMMAND}" -S "${VEX_SOURCE_DIR}/examples/consumer"
         -B "${VEX_WORK_DIR}/build" -G Ninja "-DCMAKE_PREFIX_PATH=${prefix}")
run_step("${CMAKE_COMMAND}" --build "${VEX_WORK_DIR}/build")
run_step("${VEX_WORK_DIR}/build/consumer")
message(STATUS "consumer printed: ${step_output}")
if(NOT step_output MATCHES "a=1;b=2")
  message(FATAL_ERROR "unexpected output from the example: ${step_output}")
endif()
