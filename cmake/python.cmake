# The compiled core of the Python package, one file for every version from 3.9 on, and what
# is made from the headers beside it: docstrings and stubs. Together with python/orv2_geo
# they are the package; in this tree `PYTHONPATH=python` finds them here.
if(PROJECT_IS_TOP_LEVEL)
  set(wanted AUTO)
else()
  set(wanted OFF)
endif()
set(ORV2_PYTHON ${wanted} CACHE STRING "Build the Python package: AUTO (where Python's headers are), ON, OFF")
set_property(CACHE ORV2_PYTHON PROPERTY STRINGS AUTO ON OFF)

if(NOT ORV2_PYTHON)
  return()
endif()
if(ORV2_PYTHON STREQUAL ON)
  find_package(Python3 3.9 REQUIRED COMPONENTS Interpreter Development.Module)
else()
  find_package(Python3 3.9 COMPONENTS Interpreter Development.Module)
endif()
if(NOT Python3_Development.Module_FOUND)
  message(STATUS "The Python package is not built: no headers of Python 3.9 or later, or ORV2_PYTHON is OFF")
  return()
endif()

set(ORV2_PYTHON_FOLDER ${PROJECT_BINARY_DIR}/python/orv2_geo)
file(GLOB core_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/python/core/*.cpp)
add_library(orv2_geo_python MODULE ${core_sources})
target_include_directories(orv2_geo_python PRIVATE ${PROJECT_SOURCE_DIR})
target_include_directories(orv2_geo_python SYSTEM PRIVATE ${Python3_INCLUDE_DIRS})
target_link_libraries(orv2_geo_python PRIVATE orv2_flags ${CMAKE_DL_LIBS})
set_target_properties(orv2_geo_python PROPERTIES
  PREFIX "" OUTPUT_NAME _core SUFFIX .abi3.so LIBRARY_OUTPUT_DIRECTORY ${ORV2_PYTHON_FOLDER})

# The whole package stands in the build's folder: what the tests, stubs and wheels see.
file(GLOB package_files CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/python/orv2_geo/*.py)
set(staged)
foreach(file IN LISTS package_files)
  get_filename_component(name ${file} NAME)
  add_custom_command(OUTPUT ${ORV2_PYTHON_FOLDER}/${name}
    COMMAND ${CMAKE_COMMAND} -E copy ${file} ${ORV2_PYTHON_FOLDER}/${name} DEPENDS ${file})
  list(APPEND staged ${ORV2_PYTHON_FOLDER}/${name})
endforeach()
file(GLOB told_headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/orv2_geo/*/cgeo_*.h)
set(help ${PROJECT_SOURCE_DIR}/python/make_help.py)
set(told ${ORV2_PYTHON_FOLDER}/_help.py ${ORV2_PYTHON_FOLDER}/__init__.pyi ${ORV2_PYTHON_FOLDER}/py.typed)
add_custom_command(OUTPUT ${told}
  COMMAND ${Python3_EXECUTABLE} ${help} --source ${PROJECT_SOURCE_DIR} --out ${ORV2_PYTHON_FOLDER}
  DEPENDS ${help} ${told_headers} ${PROJECT_SOURCE_DIR}/python/orv2_geo/__init__.pyi.in
    ${PROJECT_SOURCE_DIR}/orv2_geo/library/class_tables.h)
set(ORV2_PYTHON_FILES ${staged} ${told})
add_custom_target(orv2_geo_python_package ALL DEPENDS ${ORV2_PYTHON_FILES})
add_dependencies(orv2_geo_python_package orv2_geo_python)
