# Installs the build, builds two programs against the installation and runs
# them. Given: build, generator, consumer, work, and the compilers and flags.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed: ${status}")
  endif()
endfunction()

file(REMOVE_RECURSE ${work})
run("installing" ${CMAKE_COMMAND} --install ${build} --prefix ${work}/prefix)
run("configuring" ${CMAKE_COMMAND} -G ${generator} -S ${consumer} -B ${work}/consumer
  -DCMAKE_PREFIX_PATH=${work}/prefix -DCMAKE_BUILD_TYPE=Release
  -DCMAKE_C_COMPILER=${c_compiler} -DCMAKE_CXX_COMPILER=${cxx_compiler}
  "-DCMAKE_C_FLAGS=${c_flags} -Wall -Wextra -Wpedantic -Werror"
  "-DCMAKE_CXX_FLAGS=${cxx_flags} -Wall -Wextra -Wpedantic -Werror")
run("building" ${CMAKE_COMMAND} --build ${work}/consumer)
run("the C program" ${work}/consumer/consumer_c)
run("the C++ program" ${work}/consumer/consumer_cpp)
