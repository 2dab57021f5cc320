# What an installation holds: the library and beside it the module for the screen,
# where it is built; the headers that <orv2_geo/orv2_geo.hpp> and <orv2_geo/orv2_geo.h>
# reach, and no others; and what find_package(Orv2Geo) and pkg-config find.
include(CMakePackageConfigHelpers)

option(ORV2_STATIC "Install the library as an archive too" ON)
set(kinds shared)
install(TARGETS orv2_geo orv2_geo_c EXPORT Orv2Geo_shared LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(ORV2_STATIC)
  list(APPEND kinds static)
  set_target_properties(orv2_geo_static PROPERTIES EXCLUDE_FROM_ALL OFF)
  install(TARGETS orv2_geo_static orv2_geo_c_static EXPORT Orv2Geo_static
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
if(TARGET orv2_geo_qt)
  install(TARGETS orv2_geo_qt LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/orv2_geo)
endif()

# A test compares this list with what the two doors reach.
set(public_headers
  orv2_geo.h orv2_geo.hpp version.h
  angles/cgeo_Algorismos.h angles/cgeo_FuncDeriv.h
  arrays/cgeo_Matrices.h
  frame/argument.h frame/bool.h frame/class_description.h frame/export.h frame/floating_point.h frame/geo_arrays.h
  frame/late_bound.h frame/run_failure.h frame/text.h frame/variant.h
  library/catalogue.h library/object.h
  platform/form.h platform/user_interface.h
  sorting/cgeo_Ordena.h
  survey/cgeo_Geometria.h survey/cgeo_api.h
  terrain/cgeo_Terreno.h)
foreach(header IN LISTS public_headers)
  get_filename_component(room ${header} DIRECTORY)
  install(FILES ${PROJECT_SOURCE_DIR}/orv2_geo/${header}
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orv2_geo/${room})
endforeach()

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Orv2Geo)
foreach(kind IN LISTS kinds)
  install(EXPORT Orv2Geo_${kind} NAMESPACE Orv2Geo:: FILE ${kind}.cmake DESTINATION ${package_directory})
endforeach()
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Orv2GeoConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES cmake/Orv2GeoConfig.cmake ${PROJECT_BINARY_DIR}/Orv2GeoConfigVersion.cmake
  DESTINATION ${package_directory})

# It finds the prefix from where it stands itself, so that the prefix can be moved as a whole.
set(module_directory ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${module_directory}
  OUTPUT_VARIABLE ORV2_PREFIX_FROM_MODULE)
configure_file(cmake/orv2_geo.pc.in orv2_geo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/orv2_geo.pc DESTINATION ${module_directory})

if(TARGET orv2_geo_python)
  include(cmake/python_install.cmake)
endif()
