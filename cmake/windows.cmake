# The in-process component server. What hosts are told of it is made from the tables of
# its classes, by a program of the machine that builds.
find_program(ORV2_HOST_CXX NAMES c++ g++ clang++ REQUIRED
  DOC "The compiler of the machine that builds")
find_program(ORV2_INTERFACE_COMPILER NAMES widl REQUIRED DOC "The interface compiler")
find_path(ORV2_INTERFACES oaidl.idl PATHS /usr/include/wine/wine/windows REQUIRED
  NO_CMAKE_FIND_ROOT_PATH DOC "The system's own interface texts")
find_path(ORV2_TYPE_LIBRARIES stdole2.tlb PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
  REQUIRED NO_CMAKE_FIND_ROOT_PATH DOC "The system's own type libraries")

set(com ${PROJECT_SOURCE_DIR}/orv2_geo/com)
set(made ${PROJECT_BINARY_DIR}/com)
file(MAKE_DIRECTORY ${made})
file(GLOB told_by CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/orv2_geo/*/*_table.h)
add_custom_command(OUTPUT ${made}/interface_text
  COMMAND ${ORV2_HOST_CXX} -std=c++20 -I${PROJECT_SOURCE_DIR} -o ${made}/interface_text
    ${com}/interface_text/interface_text.cpp
  DEPENDS ${com}/interface_text/interface_text.cpp ${com}/identifiers.h ${told_by}
    ${PROJECT_SOURCE_DIR}/orv2_geo/frame/class_description.h)

function(orv2_told what file)
  add_custom_command(OUTPUT ${made}/${file}
    COMMAND ${made}/interface_text ${what} > ${made}/${file}
    DEPENDS ${made}/interface_text)
endfunction()
orv2_told(idl Orv2_Geo.idl)
orv2_told(manifest Orv2_Geo.manifest)
orv2_told(members early_bound_members.inc)

set(compile_interfaces ${ORV2_INTERFACE_COMPILER} -I${ORV2_INTERFACES} -L${ORV2_TYPE_LIBRARIES})
add_custom_command(OUTPUT ${made}/Orv2_Geo.tlb ${made}/Orv2_Geo_h.h
  COMMAND ${compile_interfaces} -t -o ${made}/Orv2_Geo.tlb ${made}/Orv2_Geo.idl
  COMMAND ${compile_interfaces} -DFOR_A_HEADER -h -o ${made}/Orv2_Geo_h.h ${made}/Orv2_Geo.idl
  DEPENDS ${made}/Orv2_Geo.idl)
add_custom_target(orv2_geo_told ALL
  DEPENDS ${made}/Orv2_Geo.tlb ${made}/Orv2_Geo.manifest ${made}/early_bound_members.inc)

enable_language(RC)
add_library(orv2_geo SHARED ${com}/Orv2_Geo.rc ${com}/Orv2_Geo.def)
add_dependencies(orv2_geo orv2_geo_told)
set_source_files_properties(${com}/Orv2_Geo.rc PROPERTIES
  COMPILE_OPTIONS "-I${made}" OBJECT_DEPENDS ${made}/Orv2_Geo.tlb)
set(ORV2_SYSTEM_LIBRARIES ole32 oleaut32 uuid user32 gdi32 comctl32 advapi32)
target_link_libraries(orv2_geo PRIVATE orv2_geo_objects ${ORV2_SYSTEM_LIBRARIES})
# It needs nothing but the system's own libraries.
target_link_options(orv2_geo PRIVATE -static -Wl,--no-undefined -Wl,--enable-stdcall-fixup)
set_target_properties(orv2_geo PROPERTIES PREFIX "" OUTPUT_NAME Orv2_Geo)
add_custom_command(TARGET orv2_geo POST_BUILD COMMAND ${CMAKE_COMMAND} -E copy_if_different
  ${made}/Orv2_Geo.manifest ${made}/Orv2_Geo.tlb $<TARGET_FILE_DIR:orv2_geo>)
