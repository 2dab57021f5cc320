# What an installation holds: the library and beside it the module for the
# screen, where it is built, the header for C in include, the
# headers for C++ under include/orv2_geo as they lie here, and the package that
# find_package(Orv2_Geo) finds.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS orv2_geo EXPORT Orv2_Geo
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION include)

if(TARGET orv2_geo_qt)
  install(TARGETS orv2_geo_qt LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()

install(FILES ${PROJECT_SOURCE_DIR}/c_api/orv2_geo.h DESTINATION include)
foreach(room IN LISTS rooms)
  if(room STREQUAL c_api)
    continue()  # what lies behind the header for C is nobody's business
  endif()
  file(GLOB headers CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/${room}/*.h ${PROJECT_SOURCE_DIR}/${room}/*.hpp)
  install(FILES ${headers} DESTINATION include/orv2_geo/${room})
endforeach()

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Orv2_Geo)
install(EXPORT Orv2_Geo NAMESPACE Orv2_Geo:: FILE Orv2_GeoConfig.cmake
  DESTINATION ${package_directory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Orv2_GeoConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Orv2_GeoConfigVersion.cmake DESTINATION ${package_directory})
