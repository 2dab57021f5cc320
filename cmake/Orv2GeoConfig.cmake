# Orv2Geo::orv2_geo: the library for C++. Orv2Geo::c: the same for C, without C++20.
#
# The library is shared or an archive: as the components `shared` and `static` ask, else as
# Orv2Geo_SHARED_LIBS, else as BUILD_SHARED_LIBS; without any of these it is shared. A project
# that links the archive needs the language CXX, for the run-time of C++.
if("shared" IN_LIST Orv2Geo_FIND_COMPONENTS AND "static" IN_LIST Orv2Geo_FIND_COMPONENTS)
  set(Orv2Geo_FOUND FALSE)
  set(Orv2Geo_NOT_FOUND_MESSAGE "Orv2Geo is asked for as shared and as static, and has one name for both")
  return()
endif()

set(orv2_geo_kind shared)
if(Orv2Geo_FIND_COMPONENTS)
  list(GET Orv2Geo_FIND_COMPONENTS 0 orv2_geo_kind)
elseif(DEFINED Orv2Geo_SHARED_LIBS)
  if(NOT Orv2Geo_SHARED_LIBS)
    set(orv2_geo_kind static)
  endif()
elseif(DEFINED BUILD_SHARED_LIBS AND NOT BUILD_SHARED_LIBS)
  set(orv2_geo_kind static)
endif()

if(TARGET Orv2Geo::orv2_geo)
  get_target_property(orv2_geo_present Orv2Geo::orv2_geo TYPE)
  string(TOLOWER ${orv2_geo_present} orv2_geo_present)
  if(NOT orv2_geo_present STREQUAL "${orv2_geo_kind}_library")
    set(Orv2Geo_FOUND FALSE)
    set(Orv2Geo_NOT_FOUND_MESSAGE "Orv2Geo is in use already, as ${orv2_geo_present}")
  endif()
elseif(EXISTS ${CMAKE_CURRENT_LIST_DIR}/${orv2_geo_kind}.cmake)
  include(${CMAKE_CURRENT_LIST_DIR}/${orv2_geo_kind}.cmake)
else()
  set(Orv2Geo_FOUND FALSE)
  set(Orv2Geo_NOT_FOUND_MESSAGE "Orv2Geo is not installed as ${orv2_geo_kind}")
endif()
