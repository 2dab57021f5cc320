# The Python package of an installation: the component `python`. Its core finds the library
# by where the two stand to each other, so that the prefix can be moved as a whole.
set(ORV2_PYTHON_INSTALL_DIR "" CACHE STRING
  "Where the Python package is installed, below the prefix; empty: where Python looks there")

# Debian's Python looks into other folders than its builders' own, and sysconfig tells where
# one scheme puts packages; site tells where this Python looks. Where that is nowhere below
# the prefix, the folder is one for every version, as the package is.
set(ORV2_PYTHON_INSTALLED ${ORV2_PYTHON_INSTALL_DIR})
if(NOT ORV2_PYTHON_INSTALLED)
  execute_process(COMMAND ${Python3_EXECUTABLE} -c "if True:
    import os, site, sys
    below = (os.path.relpath(folder, sys.argv[1]) for folder in site.getsitepackages())
    print(next((one for one in below if one.startswith('lib')), 'lib/python3/dist-packages'))"
    ${CMAKE_INSTALL_PREFIX}
    OUTPUT_VARIABLE ORV2_PYTHON_INSTALLED OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()

set(package ${ORV2_PYTHON_INSTALLED}/orv2_geo)
install(TARGETS orv2_geo_python LIBRARY DESTINATION ${package} COMPONENT python)
install(FILES ${ORV2_PYTHON_FILES} DESTINATION ${package} COMPONENT python)

set(libraries ${CMAKE_INSTALL_LIBDIR})
cmake_path(ABSOLUTE_PATH package BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
cmake_path(ABSOLUTE_PATH libraries BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
cmake_path(RELATIVE_PATH libraries BASE_DIRECTORY ${package})
# From the first: where it is given a path only when it is installed, it is linked with an
# empty one as long, which is the folder that a program happens to run in.
set_target_properties(orv2_geo_python PROPERTIES
  INSTALL_RPATH "$ORIGIN/${libraries}" BUILD_WITH_INSTALL_RPATH ON)
