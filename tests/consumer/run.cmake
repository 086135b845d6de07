# Installs the build in BUILD_DIR into a folder of its own, then builds and runs a program against it.
set(folder ${BUILD_DIR}/consumer)
file(REMOVE_RECURSE ${folder})

function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}\n${output}")
  endif()
  message(STATUS "${output}")
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${folder}/prefix)
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${folder}/build -G ${GENERATOR}
    -DCMAKE_PREFIX_PATH=${folder}/prefix -DCMAKE_CXX_FLAGS=${FLAGS})
run(${CMAKE_COMMAND} --build ${folder}/build)
file(COPY ${CMAKE_CURRENT_LIST_DIR}/../../examples/town.gpkg DESTINATION ${folder})
run(${folder}/build/consumer ${folder}/town.gpkg)
