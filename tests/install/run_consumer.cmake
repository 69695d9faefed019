# Installs the freshly built library into a scratch prefix, then configures, builds and runs
# a small consumer project that finds it with find_package(qxbase).
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "failed (${rc}): ${ARGN}")
  endif()
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/build -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen LD_LIBRARY_PATH=${prefix}/lib:${prefix}/lib/x86_64-linux-gnu
    ${WORK_DIR}/build/consumer)
