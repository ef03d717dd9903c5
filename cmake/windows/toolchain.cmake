# Windows x64 from Debian: clang with the MinGW-w64 headers and import libraries that scripts/setup-windows.sh has unpacked, and the C++
# library of the system's MinGW compiler. Everything is linked statically: the program needs nothing that Windows does not bring.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

get_filename_component(_windows "${CMAKE_CURRENT_LIST_DIR}/../../third_party/windows" ABSOLUTE)
set(_triple x86_64-w64-mingw32)
set(_headers "${_windows}/mingw/usr/share/mingw-w64/include")
set(_libraries "${_windows}/mingw/usr/${_triple}/lib")
file(GLOB _compilers "/usr/lib/gcc/${_triple}/*-posix")
if(NOT _compilers)
  message(FATAL_ERROR "no MinGW-w64 compiler in /usr/lib/gcc/${_triple}: run scripts/setup-windows.sh")
endif()
list(GET _compilers -1 _gcc)

set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-windows-gnu)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-windows-gnu)
set(CMAKE_RC_COMPILER ${_triple}-windres)
set(CMAKE_AR llvm-ar-19)
set(CMAKE_RANLIB llvm-ranlib-19)

# _WIN32_WINNT and NTDDI_VERSION: Windows 10, as JUCE asks for it; the headers' own default is older.
set(_common "-nostdlibinc -isystem ${CMAKE_CURRENT_LIST_DIR}/include -isystem ${_headers} -femulated-tls -D_WIN32_WINNT=0x0A00 -DNTDDI_VERSION=0x0A000010")
set(CMAKE_C_FLAGS_INIT "${_common}")
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem ${_gcc}/include/c++ -isystem ${_gcc}/include/c++/${_triple} -isystem ${_gcc}/include/c++/backward ${_common}")
set(CMAKE_RC_FLAGS_INIT "-I ${_headers}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fuse-ld=lld-19 -static -B${_libraries} -L${_libraries} -L${_gcc}")
set(CMAKE_CXX_STANDARD_LIBRARIES "-lkernel32 -luser32 -lgdi32 -lwinspool -lshell32 -lole32 -loleaut32 -luuid -lcomdlg32 -ladvapi32 -lwinpthread" CACHE STRING "")

set(CMAKE_FIND_ROOT_PATH "${_windows}" "${_windows}/mingw/usr/${_triple}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
