# The JUCE modules, compiled exactly once a build folder as the static library hub_juce. Everything else takes its
# definitions and include folders from there and never links a juce:: module.
set(HUB_JUCE_DIR "${CMAKE_SOURCE_DIR}/third_party/juce" CACHE PATH "unpacked JUCE 8.0.6 source")

if(NOT EXISTS "${HUB_JUCE_DIR}/CMakeLists.txt")
  message(FATAL_ERROR "no JUCE source in ${HUB_JUCE_DIR}: run scripts/setup.sh")
endif()

find_package(PkgConfig REQUIRED)
# JUCE's own checks are not REQUIRED and would fail later, in a compile.
pkg_check_modules(HUB_SYSTEM_DEPS REQUIRED freetype2 fontconfig libpng libjpeg zlib
  libcurl>=7.87     # CURLOPT_QUICK_EXIT
  x11 xext xrandr xinerama xcursor)
if(NOT WIN32)
  pkg_check_modules(HUB_CRYPTO REQUIRED IMPORTED_TARGET libcrypto)
  pkg_check_modules(HUB_PICTURES REQUIRED IMPORTED_TARGET libpng libjpeg)
  pkg_check_modules(HUB_SECRETS REQUIRED libsecret-1)
endif()

add_subdirectory("${HUB_JUCE_DIR}" juce EXCLUDE_FROM_ALL)

add_library(hub_juce STATIC)
target_link_libraries(hub_juce
  PRIVATE
    juce::juce_core juce::juce_events juce::juce_data_structures juce::juce_cryptography
    juce::juce_graphics juce::juce_gui_basics
    juce::pkgconfig_JUCE_CURL_LINUX_DEPS
    juce::pkgconfig_JUCE_IMG_LINUX_DEPS)
if(NOT HUB_SANITIZE)    # there these would turn all optimisation off, and it is slow enough
  target_link_libraries(hub_juce PUBLIC juce::juce_recommended_config_flags)
endif()
target_compile_definitions(hub_juce
  PUBLIC
    JUCE_STANDALONE_APPLICATION=1
    JUCE_WEB_BROWSER=0
    JUCE_USE_CURL=1
    JUCE_LOAD_CURL_SYMBOLS_LAZILY=0
    JUCE_MODAL_LOOPS_PERMITTED=0
    JUCE_STRICT_REFCOUNTEDPOINTER=1
  INTERFACE
    $<TARGET_PROPERTY:hub_juce,COMPILE_DEFINITIONS>)
target_include_directories(hub_juce SYSTEM INTERFACE
    $<TARGET_PROPERTY:hub_juce,INCLUDE_DIRECTORIES>)

# One precompiled header for all of our code; the other targets reuse it.
file(WRITE "${CMAKE_BINARY_DIR}/hub_pch.cpp" "")
add_library(hub_pch STATIC "${CMAKE_BINARY_DIR}/hub_pch.cpp")
target_link_libraries(hub_pch PUBLIC hub_juce PRIVATE juce::juce_recommended_warning_flags)
target_compile_options(hub_pch PRIVATE -Werror)
target_precompile_headers(hub_pch PRIVATE <juce_gui_basics/juce_gui_basics.h> <juce_cryptography/juce_cryptography.h>)
