# Tests of a build for Windows run on the system that tools/wine.sh makes, or tools/wine32.sh
# for 32-bit programs; the first test makes it, and all others wait for that.
set(wine ${PROJECT_SOURCE_DIR}/tools/wine.sh)
set(wine_prefix ${CMAKE_BINARY_DIR}/wine)
if(CMAKE_CROSSCOMPILING)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(wine ${PROJECT_SOURCE_DIR}/tools/wine32.sh)
    add_test(NAME wine COMMAND ${wine} --setup)
  else()
    add_test(NAME wine COMMAND ${CMAKE_COMMAND} -E env ORV2_WINE_ONLY_MADE=1 WINEPREFIX=${wine_prefix}
      ${wine} none)
  endif()
  set(CMAKE_CROSSCOMPILING_EMULATOR ${wine})
  set_tests_properties(wine PROPERTIES FIXTURES_SETUP wine TIMEOUT 900)
  set(system_fixture wine)
  # A box on the screen of somebody at work would wait for them.
  set(without_screen DISPLAY=unset:)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_test(NAME wine_es COMMAND ${CMAKE_COMMAND} -E env ORV2_WINE_ONLY_MADE=1 LC_ALL=es_ES.UTF-8
      WINEPREFIX=${wine_prefix}_es ${wine} none)
    set_tests_properties(wine_es PROPERTIES FIXTURES_SETUP wine_es TIMEOUT 300)
  endif()
endif()

include(googletest.cmake)
# What the tests expect of elementary functions is what the system's run-time answers.
set(system_support ${CMAKE_CURRENT_SOURCE_DIR}/support/windows_run_time.cpp)
add_compile_options(-fno-builtin-sin -fno-builtin-cos -fno-builtin-tan -fno-builtin-pow)
# A test needs no library beside it.
link_libraries(-static)
set(system_libraries ole32 oleaut32 uuid user32 gdi32 comctl32 advapi32)

# A room's tests again where the user's language is Spanish: a comma as decimal sign, and
# its order of letters.
function(orv2_test_in_spanish room)
  if(NOT CMAKE_CROSSCOMPILING OR CMAKE_SIZEOF_VOID_P EQUAL 4)
    message(STATUS "${room} is not tested in Spanish: tools/wine.sh makes such a system for 64 bits alone")
    return()
  endif()
  add_test(NAME ${room}_es_ES.UTF-8 COMMAND ${room}_tests)
  set_tests_properties(${room}_es_ES.UTF-8 PROPERTIES TIMEOUT 300 FIXTURES_REQUIRED wine_es
    ENVIRONMENT_MODIFICATION "${without_screen}"
    ENVIRONMENT "LC_ALL=es_ES.UTF-8;ORV2_TEST_DECIMAL_SIGN=,;WINEPREFIX=${wine_prefix}_es")
endfunction()
