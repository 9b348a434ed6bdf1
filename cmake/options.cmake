# Settings that every target shares, and helpers for the product's files.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

if(MSVC)
    add_compile_options(/W4 /WX /utf-8)
else()
    add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
    # Neither code nor debug information tells where it was built.
    add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=build)
endif()

if(MINGW)
    # The run-time DLL's own printf: it is smaller, and it shares the standard output of hosts that
    # use the same run time. The C++ headers would turn the setting round, so stdio.h comes first.
    add_compile_definitions(__USE_MINGW_ANSI_STDIO=0)
    add_compile_options(-include stdio.h)
    add_compile_options(-ffunction-sections -fdata-sections)
    add_link_options(-static -Wl,--gc-sections -Wl,--no-insert-timestamp
                     -Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)
endif()

if(QBSUPPORT_SANITIZE)
    add_compile_options(-fsanitize=${QBSUPPORT_SANITIZE} -fno-omit-frame-pointer
                        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${QBSUPPORT_SANITIZE})
endif()

# Gives a Windows file its version resource.
function(qbsupport_version_resource target file_name file_type description)
    set(QBSUPPORT_FILE_NAME "${file_name}")
    set(QBSUPPORT_FILE_TYPE "${file_type}")
    set(QBSUPPORT_FILE_DESCRIPTION "${description}")
    set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc")
    configure_file("${PROJECT_SOURCE_DIR}/src/interface/version.rc.in" "${resource}" @ONLY)
    target_sources(${target} PRIVATE "${resource}")
endfunction()

# Moves a MinGW file's debug information into a file of its own beside the build. The tools would
# write the time into the file's header unless told to preserve dates.
function(qbsupport_split_debug_symbols target)
    set(symbols "${CMAKE_BINARY_DIR}/symbols/$<TARGET_FILE_NAME:${target}>.debug")
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E make_directory "${CMAKE_BINARY_DIR}/symbols"
        COMMAND ${CMAKE_OBJCOPY} -p --only-keep-debug "$<TARGET_FILE:${target}>" "${symbols}"
        COMMAND ${CMAKE_STRIP} -p --strip-all "$<TARGET_FILE:${target}>"
        COMMAND ${CMAKE_OBJCOPY} -p "--add-gnu-debuglink=${symbols}" "$<TARGET_FILE:${target}>"
        VERBATIM)
endfunction()
