# Cross-builds for 64-bit Windows with clang, on the run-time libraries of the MinGW-w64 GCC, whose
# folder clang 14 does not recognise by itself.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
execute_process(COMMAND x86_64-w64-mingw32-g++-posix -print-file-name=libstdc++.a
    OUTPUT_VARIABLE libstdcxx OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
cmake_path(GET libstdcxx PARENT_PATH gcc_folder)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_CXX_COMPILER_TARGET x86_64-w64-mingw32)
set(CMAKE_C_FLAGS_INIT "-B${gcc_folder}")
set(CMAKE_CXX_FLAGS_INIT "-B${gcc_folder} -stdlib++-isystem${gcc_folder}/include/c++ \
-stdlib++-isystem${gcc_folder}/include/c++/x86_64-w64-mingw32")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-L${gcc_folder} -pthread -Wno-unused-command-line-argument")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-L${gcc_folder}")
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# The tests read what this one prints.
set(CMAKE_OBJDUMP x86_64-w64-mingw32-objdump CACHE FILEPATH "")
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
