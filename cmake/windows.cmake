# The in-process component server.
add_library(orv2_geo SHARED)
target_link_libraries(orv2_geo PRIVATE orv2_geo_objects ole32 oleaut32 uuid user32 gdi32 comctl32 advapi32)
# It needs nothing but the system's own libraries.
target_link_options(orv2_geo PRIVATE -static -Wl,--no-undefined)
set_target_properties(orv2_geo PROPERTIES PREFIX "" OUTPUT_NAME Orv2_Geo)
