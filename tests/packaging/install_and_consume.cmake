# Installs the build, moves the prefix, builds programs against what is there and runs
# them. Given: build, generator, consumers (their folder), work, survey (a point file), the compilers and flags,
# and pkg_config, which may not be there.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed: ${status}")
  endif()
endfunction()

set(strict -Wall -Wextra -Wpedantic -Werror)
list(JOIN strict " " strict_flags)
set(compilers -DCMAKE_C_COMPILER=${c_compiler} "-DCMAKE_C_FLAGS=${c_flags} ${strict_flags}")
set(with_cpp -DCMAKE_CXX_COMPILER=${cxx_compiler} "-DCMAKE_CXX_FLAGS=${cxx_flags} ${strict_flags}")

# consume(NAME SOURCE OPTIONS...): configures and builds that project.
function(consume name source)
  run("configuring ${name}" ${CMAKE_COMMAND} -G ${generator} -S ${consumers}/${source} -B ${work}/${name}
    -DCMAKE_PREFIX_PATH=${work}/moved -DCMAKE_BUILD_TYPE=Release ${compilers} ${ARGN})
  run("building ${name}" ${CMAKE_COMMAND} --build ${work}/${name})
endfunction()

file(REMOVE_RECURSE ${work})
run("installing" ${CMAKE_COMMAND} --install ${build} --prefix ${work}/prefix)
file(RENAME ${work}/prefix ${work}/moved)

if(EXISTS ${work}/moved/bin/survey_report)
  run("the installed survey_report" ${work}/moved/bin/survey_report ${survey} -o ${work}/report)
endif()

foreach(kind shared static)
  consume(${kind} consumer -Dkind=${kind} ${with_cpp})
  run("the C program, ${kind}," ${work}/${kind}/consumer_c)
  run("the C++ program, ${kind}," ${work}/${kind}/consumer_cpp)
endforeach()
consume(in_c consumer_in_c)
run("the C program of a project in C" ${work}/in_c/consumer_c)

if(NOT pkg_config)
  message("pkg-config is not here: its module is not tried (tools/setup.sh packages)")
  return()
endif()
file(GLOB_RECURSE module ${work}/moved/orv2_geo.pc)
cmake_path(GET module PARENT_PATH module_folder)
execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${module_folder}
  ${pkg_config} --cflags --libs orv2_geo
  OUTPUT_VARIABLE told OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
separate_arguments(told)
separate_arguments(c_flags)
execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${module_folder}
  ${pkg_config} --variable=libdir orv2_geo OUTPUT_VARIABLE folder OUTPUT_STRIP_TRAILING_WHITESPACE)
run("building with pkg-config" ${c_compiler} -std=c11 ${c_flags} ${strict}
  ${consumers}/consumer/consumer.c ${told} -Wl,-rpath,${folder} -o ${work}/by_pkg_config)
run("the C program of pkg-config" ${work}/by_pkg_config)
