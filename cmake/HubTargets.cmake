# hub_use_house_rules (target [header]): our warnings, as errors, and the shared precompiled header, or that of another target.
function(hub_use_house_rules target)
  set(header hub_pch ${ARGN})
  list(GET header -1 header)
  target_include_directories(${target} PUBLIC "${CMAKE_SOURCE_DIR}/src")
  target_link_libraries(${target} PUBLIC hub_juce PRIVATE juce::juce_recommended_warning_flags)
  hub_compile_strictly(${target})
  target_precompile_headers(${target} REUSE_FROM ${header})
endfunction()

# hub_add_library (name SOURCES ... LIBRARIES ...): the static library hub_<name>.
function(hub_add_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
  add_library(hub_${name} STATIC ${ARG_SOURCES})
  hub_use_house_rules(hub_${name})
  target_link_libraries(hub_${name} PUBLIC ${ARG_LIBRARIES})
endfunction()

# hub_add_folder (name libraries...): the static library hub_<name> of all of src/<name>.
function(hub_add_folder name)
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${name}/*.cpp")
  hub_add_library(${name} SOURCES ${sources} LIBRARIES ${ARGN})
endfunction()

# hub_add_test_program (name SOURCES ... LIBRARIES ... LABELS ... [FAILURES regex]): one GoogleTest executable; CTest runs each of
# its tests in a process of its own, and output that matches FAILURES fails the test too.
function(hub_add_test_program name)
  cmake_parse_arguments(ARG "" "FAILURES" "SOURCES;LIBRARIES;LABELS;PROPERTIES" ${ARGN})
  if(NOT ARG_FAILURES)
    set(ARG_FAILURES "JUCE Assertion failure|Leaked objects detected")
  endif()
  add_executable(${name} ${ARG_SOURCES})
  hub_use_house_rules(${name} ${hub_test_header})
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} hub_test_support)
  if(CMAKE_CROSSCOMPILING)
    return()    # tests/windows/run.py asks each program for its tests
  endif()
  # On Windows without what tests/windows/filters.txt lists for every Windows.
  set(left_out)
  if(WIN32)
    file(STRINGS "${CMAKE_SOURCE_DIR}/tests/windows/filters.txt" left_out REGEX "[|] *windows *[|]")
    list(TRANSFORM left_out REPLACE " *[|].*" "")
    list(JOIN left_out ":" left_out)
    set(left_out TEST_FILTER "-${left_out}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 DISCOVERY_MODE PRE_TEST ${left_out}
    PROPERTIES LABELS "${ARG_LABELS}" TIMEOUT 180
               FAIL_REGULAR_EXPRESSION "${ARG_FAILURES}"
               ${ARG_PROPERTIES})
endfunction()
