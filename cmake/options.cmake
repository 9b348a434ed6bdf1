# Settings that every target shares, and helpers for the product's files.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(MSVC)
    add_compile_options(/W4 /utf-8 /guard:cf)
    # CMake's usual settings link incrementally and keep what nobody calls.
    add_link_options(/guard:cf /Brepro /INCREMENTAL:NO /OPT:REF /OPT:ICF)
else()
    add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow)
    # Neither code nor debug information contains the build's path.
    add_compile_options(-ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=build)
endif()

if(MINGW)
    include(CheckSymbolExists)
    check_symbol_exists(_UCRT stdio.h QBSUPPORT_COMPILER_ON_UCRT)
    if(QBSUPPORT_COMPILER_ON_UCRT)
        message(FATAL_ERROR "This compiler makes programs for the Universal C run time alone. "
            "One for msvcrt.dll makes both flavours (MSYS2: that of MINGW64).")
    endif()
    # The run-time DLL's own printf: it is smaller, and it shares the standard output of hosts that
    # use the same run time. The C++ headers would reverse the setting, so stdio.h comes first.
    add_compile_definitions(__USE_MINGW_ANSI_STDIO=0)
    add_compile_options(-include stdio.h)
    add_compile_options(-ffunction-sections -fdata-sections)
    # GNU ld writes no load configuration and leaves imports and resources writable. GCC accepts
    # another linker only from such a file.
    find_program(QBSUPPORT_LLD NAMES ld.lld-19 ld.lld REQUIRED DOC "LLVM's linker")
    find_program(QBSUPPORT_OBJCOPY NAMES llvm-objcopy-19 llvm-objcopy REQUIRED DOC "LLVM's objcopy")
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        file(WRITE "${PROJECT_BINARY_DIR}/lld.specs" "*linker:\n${QBSUPPORT_LLD}\n\n")
        add_link_options("-specs=${PROJECT_BINARY_DIR}/lld.specs" -fno-use-linker-plugin)
    else()
        add_link_options("--ld-path=${QBSUPPORT_LLD}")
    endif()
    # The time stamp is a hash of the content, so builds differ in it if their content differs, and
    # the same sources give the same one.
    add_link_options(-static -Wl,--gc-sections -Wl,-Xlink=-Brepro
                     -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat
                     -Wl,--major-subsystem-version,6 -Wl,--minor-subsystem-version,1)
endif()

if(QBSUPPORT_SANITIZE)
    add_compile_options(-fsanitize=${QBSUPPORT_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${QBSUPPORT_SANITIZE})
endif()

# The configuration is part of clang-tidy's command, so that a change of it repeats the analysis.
if(CMAKE_CXX_CLANG_TIDY)
    file(GLOB_RECURSE configurations "${PROJECT_SOURCE_DIR}/*/.clang-tidy")
    foreach(configuration "${PROJECT_SOURCE_DIR}/.clang-tidy" ${configurations})
        file(SHA256 "${configuration}" digest)
        list(APPEND CMAKE_CXX_CLANG_TIDY "--extra-arg=-DQBSUPPORT_TIDY_${digest}")
    endforeach()
endif()

# Gives a Windows file its version resource.
function(qbsupport_version_resource target file_name file_type description)
    set(QBSUPPORT_FILE_NAME "${file_name}")
    set(QBSUPPORT_FILE_TYPE "${file_type}")
    set(QBSUPPORT_FILE_DESCRIPTION "${description}")
    set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${resource}" @ONLY)
    target_sources(${target} PRIVATE "${resource}")
endfunction()

# Moves a MinGW file's debug information into a file of its own beside the build. LLVM's tools do it,
# because GNU's write the time into the file's header and lose the debug directory's data.
function(qbsupport_split_debug_symbols target)
    set(folder "${PROJECT_BINARY_DIR}/symbols")
    if(target STREQUAL QBSUPPORT_ucrt)
        string(APPEND folder "/ucrt")
    endif()
    set(file "$<TARGET_FILE:${target}>")
    set(symbols "${folder}/$<TARGET_FILE_NAME:${target}>.debug")
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E make_directory "${folder}"
        COMMAND ${QBSUPPORT_OBJCOPY} --only-keep-debug "${file}" "${symbols}"
        COMMAND ${QBSUPPORT_OBJCOPY} --strip-all "--add-gnu-debuglink=${symbols}" "${file}"
        VERBATIM)
endfunction()
