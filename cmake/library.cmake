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
# These calls must reach the C run-time: see elementary.h.
set_source_files_properties(${PROJECT_SOURCE_DIR}/orv2_geo/frame/elementary.cpp TARGET_DIRECTORY orv2_geo_objects
  PROPERTIES COMPILE_OPTIONS "-fno-builtin")

if(WIN32)
  include(cmake/windows.cmake)
  return()
endif()

add_library(orv2_geo SHARED)
target_link_libraries(orv2_geo PRIVATE orv2_geo_objects ${CMAKE_DL_LIBS})
target_include_directories(orv2_geo PUBLIC
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
target_compile_features(orv2_geo PUBLIC cxx_std_20)
set(exports ${PROJECT_SOURCE_DIR}/cmake/exports.map)
target_link_options(orv2_geo PRIVATE -Wl,--version-script=${exports} -Wl,--no-undefined)
set_target_properties(orv2_geo PROPERTIES
  VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS ${exports})
add_library(Orv2_Geo::orv2_geo ALIAS orv2_geo)
