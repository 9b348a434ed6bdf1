# Where `cmake --install` puts the files, and how other projects find them. The layout is the
# archive's on every system: bin, include, lib.
include(CMakePackageConfigHelpers)

install(TARGETS QBSUPPORT
    RUNTIME DESTINATION bin
    LIBRARY DESTINATION lib
    ARCHIVE DESTINATION lib)
if(TARGET QBSUPPORT_ucrt)
    # The same import libraries serve for this one, because the exports are the same.
    install(TARGETS QBSUPPORT_ucrt RUNTIME DESTINATION bin/ucrt)
endif()
install(DIRECTORY include/qbsupport DESTINATION include)
if(WIN32)
    install(TARGETS qbreport qbreportw RUNTIME DESTINATION bin)
endif()
if(msvc_import_library)
    install(FILES "${msvc_import_library}" DESTINATION lib)
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
# The other file checks the platform, because it can say what is wrong.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/qbsupportConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES
    "${PROJECT_BINARY_DIR}/qbsupportConfig.cmake"
    "${PROJECT_BINARY_DIR}/qbsupportConfigVersion.cmake"
    DESTINATION lib/cmake/qbsupport)
configure_file(cmake/qbsupport.pc.in "${PROJECT_BINARY_DIR}/qbsupport.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qbsupport.pc" DESTINATION lib/pkgconfig)
