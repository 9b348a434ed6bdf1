# The files that make up the product: one target builds all that is installed, and the presets' own
# build directories keep a copy of it in out/.
add_custom_target(product ALL)

# add_product_file(<target> <name below out/> <file>): what others than the presets build, such as
# `cmake --preset windows-x64 -B build/mine`, stays in their own build directory.
function(add_product_file target name file)
    add_dependencies(product ${target})
    if(QBSUPPORT_COPY_DIR AND PROJECT_BINARY_DIR STREQUAL QBSUPPORT_PRESET_DIR)
        set(copy "${QBSUPPORT_COPY_DIR}/${name}")
        add_custom_command(OUTPUT "${copy}"
            COMMAND ${CMAKE_COMMAND} -E copy "${file}" "${copy}"
            DEPENDS ${target} "${file}" VERBATIM)
        string(MAKE_C_IDENTIFIER "copy_${name}" copy_target)
        add_custom_target(${copy_target} DEPENDS "${copy}")
        add_dependencies(product ${copy_target})
    endif()
endfunction()

if(WIN32)
    add_product_file(QBSUPPORT QBSUPPORT.dll "$<TARGET_FILE:QBSUPPORT>")
else()
    add_product_file(QBSUPPORT libQBSUPPORT.so "$<TARGET_FILE:QBSUPPORT>")
endif()
if(TARGET QBSUPPORT_ucrt)
    add_product_file(QBSUPPORT_ucrt ucrt/QBSUPPORT.dll "$<TARGET_FILE:QBSUPPORT_ucrt>")
endif()
foreach(program qbreport qbreportw)
    if(TARGET ${program})
        add_product_file(${program} ${program}${CMAKE_EXECUTABLE_SUFFIX} "$<TARGET_FILE:${program}>")
    endif()
endforeach()
if(MSVC)
    add_product_file(QBSUPPORT QBSUPPORT.lib "$<TARGET_LINKER_FILE:QBSUPPORT>")
elseif(MINGW)
    add_product_file(QBSUPPORT libQBSUPPORT.dll.a "$<TARGET_LINKER_FILE:QBSUPPORT>")
    find_program(QBSUPPORT_LLVM_DLLTOOL llvm-dlltool DOC "Makes the import library for MSVC")
    if(NOT QBSUPPORT_LLVM_DLLTOOL)
        message(STATUS "QBSUPPORT.lib, the import library for MSVC, is not made: no llvm-dlltool")
        return()
    endif()
    # It binds by ordinal, which the DLL's own .def must not ask for: NONAME there would take the
    # names out of the DLL.
    set(exports "${PROJECT_SOURCE_DIR}/src/interface/QBSUPPORT.def")
    set(ordinals "${PROJECT_BINARY_DIR}/QBSUPPORT_ordinals.def")
    set(msvc_import_library "${QBSUPPORT_OUTPUT_DIR}/QBSUPPORT.lib")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${exports}")
    file(READ "${exports}" definitions)
    string(REGEX REPLACE "(@[0-9]+)" "\\1 NONAME" definitions "${definitions}")
    file(CONFIGURE OUTPUT "${ordinals}" CONTENT "${definitions}" @ONLY)
    add_custom_command(OUTPUT "${msvc_import_library}"
        COMMAND "${QBSUPPORT_LLVM_DLLTOOL}" -m i386:x86-64 -d "${ordinals}"
                -D QBSUPPORT.dll -l "${msvc_import_library}"
        DEPENDS "${ordinals}"
        VERBATIM)
    add_custom_target(msvc_import_library DEPENDS "${msvc_import_library}")
    add_product_file(msvc_import_library QBSUPPORT.lib "${msvc_import_library}")
endif()
