# What `cmake --install` puts where, and the CMake package for projects outside. The layout is the
# archive's: bin, include, lib, the same on every system.
include(CMakePackageConfigHelpers)

install(TARGETS QBSUPPORT
    RUNTIME DESTINATION bin
    LIBRARY DESTINATION lib
    ARCHIVE DESTINATION lib)
if(TARGET QBSUPPORT_ucrt)
    # Linked against by the same import libraries: the exports are the same.
    install(TARGETS QBSUPPORT_ucrt RUNTIME DESTINATION bin/ucrt)
endif()
install(DIRECTORY include/qbsupport DESTINATION include)
if(WIN32)
    install(TARGETS qbreport RUNTIME DESTINATION bin)
endif()

# MSVC's import library. It binds by ordinal, which the DLL's own .def must not ask for: NONAME
# there would take the names out of the DLL.
if(MINGW)
    find_program(QBSUPPORT_LLVM_DLLTOOL llvm-dlltool DOC "Makes the import library for MSVC")
    if(QBSUPPORT_LLVM_DLLTOOL)
        set(exports "${PROJECT_SOURCE_DIR}/src/interface/QBSUPPORT.def")
        set(ordinals "${PROJECT_BINARY_DIR}/QBSUPPORT_ordinals.def")
        set(import_library "${QBSUPPORT_OUTPUT_DIR}/QBSUPPORT.lib")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${exports}")
        file(READ "${exports}" definitions)
        string(REGEX REPLACE "(@[0-9]+)" "\\1 NONAME" definitions "${definitions}")
        file(CONFIGURE OUTPUT "${ordinals}" CONTENT "${definitions}" @ONLY)
        add_custom_command(OUTPUT "${import_library}"
            COMMAND "${QBSUPPORT_LLVM_DLLTOOL}" -m i386:x86-64 -d "${ordinals}"
                    -D QBSUPPORT.dll -l "${import_library}"
            DEPENDS "${ordinals}"
            VERBATIM)
        add_custom_target(qbsupport_msvc_import_library ALL DEPENDS "${import_library}")
        install(FILES "${import_library}" DESTINATION lib)
    else()
        message(STATUS "QBSUPPORT.lib, the import library for MSVC, is not made: no llvm-dlltool")
    endif()
endif()

if(WIN32)
    set(QBSUPPORT_LIBRARY_PATH "bin/QBSUPPORT.dll")
else()
    set(QBSUPPORT_LIBRARY_PATH "lib/libQBSUPPORT.so")
endif()
configure_package_config_file(cmake/qbsupportConfig.cmake.in
    "${PROJECT_BINARY_DIR}/qbsupportConfig.cmake"
    INSTALL_DESTINATION lib/cmake/qbsupport
    NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/qbsupportConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/qbsupportConfig.cmake"
    "${PROJECT_BINARY_DIR}/qbsupportConfigVersion.cmake"
    DESTINATION lib/cmake/qbsupport)
