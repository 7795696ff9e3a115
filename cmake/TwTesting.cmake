# GoogleTest: the system package on Linux; on Windows the sources that
# Debian's googletest package ships, built with the cross compiler.
if(CMAKE_CROSSCOMPILING AND WIN32)
  set(gtest_disable_pthreads OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
else()
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

# Under Wine, one wineserver lives for the whole CTest run; without it every
# test pays for a server start.
if(CMAKE_CROSSCOMPILING_EMULATOR)
  add_test(NAME wineserver.start COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} --start-server)
  add_test(NAME wineserver.stop COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} --stop-server)
  set_tests_properties(wineserver.start PROPERTIES FIXTURES_SETUP wine TIMEOUT 120)
  set_tests_properties(wineserver.stop PROPERTIES FIXTURES_CLEANUP wine TIMEOUT 60)
endif()

# tw_add_test(<target> LABELS <subsystem> [integration] SOURCES ... DEPENDS ...
#             [RESOURCE_LOCK name])
function(tw_add_test target)
  cmake_parse_arguments(ARG "" "RESOURCE_LOCK" "LABELS;SOURCES;DEPENDS" ${ARGN})
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE ${ARG_DEPENDS} GTest::gtest_main GTest::gtest)
  tw_warnings(${target})
  tw_static_runtime(${target})
  # Labels go on the directory: a list inside the properties handed to the
  # discovered tests would be flattened into property names.
  set_property(DIRECTORY APPEND PROPERTY LABELS ${ARG_LABELS})
  # tests_<subsystem> builds every test program of a subsystem.
  list(GET ARG_LABELS 0 _subsystem)
  if(NOT TARGET tests_${_subsystem})
    add_custom_target(tests_${_subsystem})
  endif()
  add_dependencies(tests_${_subsystem} ${target})
  set(_props)
  if(ARG_RESOURCE_LOCK)
    list(APPEND _props RESOURCE_LOCK ${ARG_RESOURCE_LOCK})
  endif()
  if(CMAKE_CROSSCOMPILING_EMULATOR)
    # Under Wine every process start costs time, so a program runs whole, in
    # one process; its own output names the test that failed.
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES TIMEOUT 900 FIXTURES_REQUIRED wine ${_props})
  else()
    gtest_discover_tests(${target}
      DISCOVERY_MODE PRE_TEST
      DISCOVERY_TIMEOUT 60
      PROPERTIES TIMEOUT 120 ${_props})
  endif()
endfunction()
