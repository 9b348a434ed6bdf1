# What `cmake --install` puts where, and what projects outside find it by. The layout is the
# archive's: bin, include, lib, the same on every system.
include(CMakePackageConfigHelpers)

set(programs)
if(WIN32)
    set(programs qbreport)
    if(TARGET qbreportw)
        list(APPEND programs qbreportw)
    endif()
endif()

# Before anything is copied.
set(needed ${msvc_import_library})
foreach(target QBSUPPORT QBSUPPORT_ucrt ${programs})
    if(TARGET ${target})
        list(APPEND needed "$<TARGET_FILE:${target}>")
    endif()
endforeach()
foreach(file IN LISTS needed)
    install(CODE "if(NOT EXISTS \"${file}\")
        message(FATAL_ERROR \"not built yet: cmake --build '${PROJECT_BINARY_DIR}'\")
    endif()")
endforeach()

install(TARGETS QBSUPPORT
    RUNTIME DESTINATION bin
    LIBRARY DESTINATION lib
    ARCHIVE DESTINATION lib)
if(TARGET QBSUPPORT_ucrt)
    # Linked against by the same import libraries: the exports are the same.
    install(TARGETS QBSUPPORT_ucrt RUNTIME DESTINATION bin/ucrt)
endif()
install(DIRECTORY include/qbsupport DESTINATION include)
if(programs)
    install(TARGETS ${programs} RUNTIME DESTINATION bin)
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
# The platform is the other file's to check: it says what is wrong.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/qbsupportConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES
    "${PROJECT_BINARY_DIR}/qbsupportConfig.cmake"
    "${PROJECT_BINARY_DIR}/qbsupportConfigVersion.cmake"
    DESTINATION lib/cmake/qbsupport)
configure_file(cmake/qbsupport.pc.in "${PROJECT_BINARY_DIR}/qbsupport.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qbsupport.pc" DESTINATION lib/pkgconfig)
