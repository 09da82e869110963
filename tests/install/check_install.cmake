# Installs the build in BUILD_DIR into WORK_DIR/prefix, then configures, builds and runs the
# consumer project in SOURCE_DIR against that prefix.
file(REMOVE_RECURSE ${WORK_DIR})

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
if(NOT last_output MATCHES "consumer: 2 points, phase 'install check'")
    message(FATAL_ERROR "unexpected consumer output: ${last_output}")
endif()
message(STATUS "${last_output}")
