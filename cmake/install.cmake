# What an installation holds: the library and beside it the module for the screen,
# where it is built; the headers that <orv2_geo/orv2_geo.hpp> and <orv2_geo/orv2_geo.h>
# reach, and no others; and the package that find_package(Orv2_Geo) finds.
include(CMakePackageConfigHelpers)

install(TARGETS orv2_geo EXPORT Orv2_Geo LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(TARGET orv2_geo_qt)
  install(TARGETS orv2_geo_qt LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()

# A test compares this list with what the two doors reach.
set(public_headers
  orv2_geo.h orv2_geo.hpp version.h
  angles/cgeo_Algorismos.h angles/cgeo_FuncDeriv.h
  arrays/cgeo_Matrices.h
  frame/argument.h frame/bool.h frame/class_description.h frame/export.h frame/geo_arrays.h
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

set(package_directory ${CMAKE_INSTALL_LIBDIR}/cmake/Orv2_Geo)
install(EXPORT Orv2_Geo NAMESPACE Orv2_Geo:: FILE Orv2_GeoConfig.cmake
  DESTINATION ${package_directory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Orv2_GeoConfigVersion.cmake
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Orv2_GeoConfigVersion.cmake DESTINATION ${package_directory})

if(TARGET orv2_geo_python)
  include(cmake/python_install.cmake)
endif()
