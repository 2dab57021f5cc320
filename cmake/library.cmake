include(GNUInstallDirs)

# Each room's sources; then all of them as one shared library. The tests link
# the same objects, so that they also see what is not exported.
set(rooms frame platform angles plane survey terrain sorting repeated dialogs arrays library)
if(WIN32)
  list(APPEND rooms platform/windows com ui/win32)
else()
  list(APPEND rooms platform/posix c_api)
endif()
set(sources)
foreach(room IN LISTS rooms)
  file(GLOB room_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/orv2_geo/${room}/*.cpp)
  list(APPEND sources ${room_sources})
endforeach()

add_library(orv2_geo_objects OBJECT ${sources})
target_include_directories(orv2_geo_objects PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(orv2_geo_objects PRIVATE orv2_flags)

# Formulas and the way of a call have no array of their own that could be written past; what a
# caller's variables are made of is no reason to guard their frames. Texts still are one.
if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  file(GLOB unguarded CONFIGURE_DEPENDS orv2_geo/plane/*.cpp orv2_geo/angles/*.cpp
    orv2_geo/survey/*.cpp orv2_geo/terrain/*.cpp orv2_geo/*/*_table.cpp)
  set_source_files_properties(${unguarded} orv2_geo/c_api/objects.cpp orv2_geo/library/object.cpp
    orv2_geo/library/catalogue.cpp TARGET_DIRECTORY orv2_geo_objects
    PROPERTIES COMPILE_OPTIONS "$<$<CXX_COMPILER_ID:GNU,Clang>:-fstack-protector>")
endif()

if(WIN32)
  include(cmake/windows.cmake)
  return()
endif()

add_library(orv2_geo SHARED)
target_link_libraries(orv2_geo PRIVATE orv2_geo_objects ${CMAKE_DL_LIBS})
set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
# Once loaded it stays, whatever the compiler: threads and handles of the host outlive a dlclose.
# Its tables of addresses are filled when it is loaded, and cannot be written from then on.
target_link_options(orv2_geo PRIVATE -Wl,--version-script=${exports} -Wl,-z,nodelete -Wl,-z,relro,-z,now)
if(NOT (CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_FLAGS MATCHES "fsanitize"))
  # The run-time of clang's sanitizers is the program's; else all is there.
  target_link_options(orv2_geo PRIVATE -Wl,--no-undefined)
endif()
set_target_properties(orv2_geo PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS ${exports})

# The same objects as an archive. The module for the screen belongs to the shared library:
# a program that holds the archive has its boxes on the console.
add_library(orv2_geo_static STATIC EXCLUDE_FROM_ALL $<TARGET_OBJECTS:orv2_geo_objects>)
target_link_libraries(orv2_geo_static PRIVATE ${CMAKE_DL_LIBS})
set_target_properties(orv2_geo_static PROPERTIES OUTPUT_NAME orv2_geo EXPORT_NAME orv2_geo)

# Each for C++, and for C alone: without the headers' demand for C++20.
foreach(kind "" _static)
  add_library(orv2_geo_c${kind} INTERFACE)
  target_link_libraries(orv2_geo_c${kind} INTERFACE $<LINK_ONLY:orv2_geo${kind}>)
  set_target_properties(orv2_geo_c${kind} PROPERTIES EXPORT_NAME c)
  foreach(library orv2_geo${kind} orv2_geo_c${kind})
    target_include_directories(${library} INTERFACE
      $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
      $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  endforeach()
  target_compile_features(orv2_geo${kind} INTERFACE cxx_std_20)
endforeach()

# As a part of another project it has the names of its package.
if(BUILD_SHARED_LIBS OR NOT DEFINED BUILD_SHARED_LIBS)
  add_library(Orv2Geo::orv2_geo ALIAS orv2_geo)
  add_library(Orv2Geo::c ALIAS orv2_geo_c)
else()
  add_library(Orv2Geo::orv2_geo ALIAS orv2_geo_static)
  add_library(Orv2Geo::c ALIAS orv2_geo_c_static)
endif()
