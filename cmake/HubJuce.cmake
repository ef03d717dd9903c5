# The JUCE modules, compiled exactly once a build folder as the static library hub_juce. Everything else takes its
# definitions and include folders from there and never links a juce:: module.
set(HUB_JUCE_DIR "${CMAKE_SOURCE_DIR}/third_party/juce" CACHE PATH "unpacked JUCE 8.0.6 source")

if(NOT EXISTS "${HUB_JUCE_DIR}/CMakeLists.txt")
  message(FATAL_ERROR "no JUCE source in ${HUB_JUCE_DIR}: run scripts/setup.sh")
endif()

if(WIN32)
  # The Hub judges pictures by these two itself. JUCE as its makers ship it brings its own copies, inside its namespace; Debian's leaves
  # them to the system.
  find_package(ZLIB REQUIRED)
  find_package(PNG REQUIRED)
  find_package(JPEG REQUIRED)
else()
  find_package(PkgConfig REQUIRED)
  # JUCE's own checks are not REQUIRED and would fail later, in a compile.
  pkg_check_modules(HUB_SYSTEM_DEPS REQUIRED freetype2 fontconfig libpng libjpeg zlib
    libcurl>=7.87     # CURLOPT_QUICK_EXIT
    x11 xext xrandr xinerama xcursor)
  pkg_check_modules(HUB_CRYPTO REQUIRED IMPORTED_TARGET libcrypto)
  pkg_check_modules(HUB_PICTURES REQUIRED IMPORTED_TARGET libpng libjpeg)
  pkg_check_modules(HUB_SECRETS REQUIRED libsecret-1)
endif()

add_subdirectory("${HUB_JUCE_DIR}" juce EXCLUDE_FROM_ALL)

add_library(hub_juce STATIC)
target_link_libraries(hub_juce
  PRIVATE
    juce::juce_core juce::juce_events juce::juce_data_structures juce::juce_cryptography
    juce::juce_graphics juce::juce_gui_basics)
if(WIN32)
  include(HubJuceWindows)
else()
  target_link_libraries(hub_juce PRIVATE juce::pkgconfig_JUCE_CURL_LINUX_DEPS juce::pkgconfig_JUCE_IMG_LINUX_DEPS)
  target_compile_definitions(hub_juce PUBLIC JUCE_USE_CURL=1 JUCE_LOAD_CURL_SYMBOLS_LAZILY=0)
endif()
# With sanitizers these would turn all optimisation off, and they are slow enough; in the cross build they would add debugging
# information that nothing there reads.
if(NOT HUB_SANITIZE AND NOT CMAKE_CROSSCOMPILING)
  target_link_libraries(hub_juce PUBLIC juce::juce_recommended_config_flags)
endif()
target_compile_definitions(hub_juce
  PUBLIC
    JUCE_STANDALONE_APPLICATION=1
    JUCE_WEB_BROWSER=0
    JUCE_MODAL_LOOPS_PERMITTED=0
    JUCE_STRICT_REFCOUNTEDPOINTER=1
  INTERFACE
    $<TARGET_PROPERTY:hub_juce,COMPILE_DEFINITIONS>)
target_include_directories(hub_juce SYSTEM INTERFACE
    $<TARGET_PROPERTY:hub_juce,INCLUDE_DIRECTORIES>)

# hub_compile_strictly (target): with warnings as errors. Microsoft's compiler only warns: its warnings change from release to release, and
# no machine of the project's own looks at them. In a cross build with assertions only JUCE is optimised: there is so much more to compile
# of ours than to run.
function(hub_compile_strictly target)
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(CMAKE_CROSSCOMPILING)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Debug>:-O0>)
  endif()
endfunction()

# One precompiled header for all of our code; the other targets reuse it.
file(WRITE "${CMAKE_BINARY_DIR}/hub_pch.cpp" "")
add_library(hub_pch STATIC "${CMAKE_BINARY_DIR}/hub_pch.cpp")
target_link_libraries(hub_pch PUBLIC hub_juce PRIVATE juce::juce_recommended_warning_flags)
hub_compile_strictly(hub_pch)
target_precompile_headers(hub_pch PRIVATE <juce_gui_basics/juce_gui_basics.h> <juce_cryptography/juce_cryptography.h>)
