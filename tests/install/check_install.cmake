# Installs the build in BUILD_DIR into WORK_DIR/prefix, then configures, builds and runs the
# consumer project in SOURCE_DIR against that prefix, and the installed ptreport on its run.
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR}/run)

function(run)
    execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${WORK_DIR}/run
        RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGN}\n${out}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${WORK_DIR}/prefix)
# The consumer sees the tracer's headers only: the host layer's are moved out of its reach.
file(RENAME ${WORK_DIR}/prefix/include/pt_platform ${WORK_DIR}/pt_platform_hidden)
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build -G ${GENERATOR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${WORK_DIR}/build/consumer)
# 4 workers of 50 tasks, each two phases, and a second pass of worker 0: 1000 points.
if(NOT last_output MATCHES "consumer: 1000 points, phase 'task'")
    message(FATAL_ERROR "unexpected consumer output: ${last_output}")
endif()
message(STATUS "${last_output}")
foreach(page worker0.html worker3.html difference.html)
    file(READ ${WORK_DIR}/run/${page} text)
    if(NOT text MATCHES "install check" OR text MATCHES "diagnosticReport")
        message(FATAL_ERROR "${page} is not a page of the run")
    endif()
endforeach()

run(${WORK_DIR}/prefix/bin/ptreport aggregate second.hvf -o aggregate.html)
if(NOT last_output MATCHES "aggregate.html")
    message(FATAL_ERROR "the installed ptreport did not write its page: ${last_output}")
endif()
foreach(installed share/performance_tracer/read_value_file.py share/doc/performance_tracer/value_files.md)
    if(NOT EXISTS ${WORK_DIR}/prefix/${installed})
        message(FATAL_ERROR "${installed} is not installed")
    endif()
endforeach()
