# Cross-builds for 64-bit Windows with clang, on the libraries of the MinGW-w64 GCC.
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
set(CMAKE_C_COMPILER clang-19)
set(CMAKE_CXX_COMPILER clang++-19)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
# The C++ library needs the thread library, which clang does not link by itself.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-pthread -Wno-unused-command-line-argument")
