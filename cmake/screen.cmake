# The module that draws boxes and forms, where Qt is found. The library never
# links it; see platform/screen_module.h.
set(ORV2_QT AUTO CACHE STRING "Build the module for the screen: AUTO (where Qt 6 is found), ON, OFF")
set_property(CACHE ORV2_QT PROPERTY STRINGS AUTO ON OFF)

if(ORV2_QT STREQUAL AUTO)
  find_package(Qt6 COMPONENTS Widgets QUIET)
elseif(ORV2_QT)
  find_package(Qt6 COMPONENTS Widgets REQUIRED)
endif()
if(NOT ORV2_QT OR NOT Qt6Widgets_FOUND)
  message(STATUS "Boxes and forms go to the console: no Qt 6 Widgets, or ORV2_QT is OFF")
  return()
endif()

file(GLOB qt_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/ui/qt/*.cpp)
add_library(orv2_geo_qt MODULE ${qt_sources})
target_link_libraries(orv2_geo_qt PRIVATE orv2_geo orv2_flags Qt6::Widgets)
target_link_options(orv2_geo_qt PRIVATE -Wl,--no-undefined)
set_target_properties(orv2_geo_qt PROPERTIES INSTALL_RPATH "$ORIGIN")
