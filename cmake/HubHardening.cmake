# What people get is compiled so that a memory error ends the program instead of taking it over.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT WIN32)
  add_compile_definitions(_FORTIFY_SOURCE=2)
  add_compile_options(-fstack-protector-strong -fstack-clash-protection)
endif()
