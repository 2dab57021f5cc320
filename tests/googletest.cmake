# The test framework from its sources: packages of it are for this machine alone.
set(googletest /usr/src/googletest/googletest CACHE PATH "Sources of the test framework")
if(NOT EXISTS ${googletest}/src/gtest-all.cc)
  message(FATAL_ERROR "The tests take the sources of googletest (tools/setup.sh windows or cross)")
endif()
add_library(gtest_main STATIC EXCLUDE_FROM_ALL ${googletest}/src/gtest-all.cc ${googletest}/src/gtest_main.cc)
target_include_directories(gtest_main SYSTEM PUBLIC ${googletest}/include PRIVATE ${googletest})
add_library(GTest::gtest_main ALIAS gtest_main)
