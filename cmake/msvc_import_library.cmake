# A MinGW build makes MSVC's import library too, QBSUPPORT.lib, if LLVM's tool is there.
if(MSVC)
    return()
endif()
find_program(QBSUPPORT_LLVM_DLLTOOL NAMES llvm-dlltool-19 llvm-dlltool DOC "Makes MSVC's import library")
if(NOT QBSUPPORT_LLVM_DLLTOOL)
    message(STATUS "QBSUPPORT.lib, the import library for MSVC, is not made: no llvm-dlltool")
    return()
endif()

# This library binds by ordinal. NONAME in the DLL's own .def would take the names out of the DLL.
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
add_custom_target(msvc_import_library ALL DEPENDS "${msvc_import_library}")
