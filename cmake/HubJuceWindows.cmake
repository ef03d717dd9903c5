# What hub_juce needs on Windows alone: the system's libraries by name instead of by pragma, and the libraries that are not in JUCE.
target_compile_definitions(hub_juce PUBLIC JUCE_USE_CURL=0 JUCE_DONT_AUTOLINK_TO_WIN32_LIBRARIES=1
  JUCE_INCLUDE_ZLIB_CODE=0)    # the Hub uses zlib too, and there shall be one
target_link_libraries(hub_juce PUBLIC
  ZLIB::ZLIB PNG::PNG JPEG::JPEG
  advapi32 bcrypt comctl32 comdlg32 crypt32 d2d1 d3d11 dbghelp dcomp dwmapi dwrite dxgi dxguid gdi32 imm32 iphlpapi kernel32 ole32 oleacc
  oleaut32 rpcrt4 sapi shell32 shlwapi uiautomationcore user32 uuid uxtheme version vfw32 wininet winmm winspool ws2_32)

if(CMAKE_CROSSCOMPILING)
  target_compile_definitions(hub_juce PUBLIC JUCE_64BIT=1)
  target_link_directories(hub_juce PUBLIC "${CMAKE_SOURCE_DIR}/third_party/windows/lib")    # Debian's JUCE names zlib without a place
  target_compile_options(hub_juce
    PRIVATE -w
    PUBLIC "$<$<COMPILE_LANGUAGE:CXX>:SHELL:-include \"${CMAKE_SOURCE_DIR}/cmake/windows/juce-prefix.h\">")
endif()
