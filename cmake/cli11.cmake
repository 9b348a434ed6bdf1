# CLI11, which reads the command line: a package of headers, CLI11::CLI11.
find_package(CLI11 2.1 QUIET ONLY_CMAKE_FIND_ROOT_PATH)
if(CLI11_FOUND)
    return()
endif()

# A cross-build looks for headers of the target system only. Those of the build machine serve as
# well, but their folder must not be an include directory, because it has other headers too.
find_path(QBSUPPORT_CLI11_DIR CLI/CLI.hpp NO_CMAKE_FIND_ROOT_PATH DOC "The folder that has CLI/CLI.hpp")
if(NOT CMAKE_CROSSCOMPILING OR NOT QBSUPPORT_CLI11_DIR)
    message(FATAL_ERROR "CLI11 is missing (Debian: libcli11-dev, vcpkg: cli11)")
endif()
file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/cli11")
file(CREATE_LINK "${QBSUPPORT_CLI11_DIR}/CLI" "${PROJECT_BINARY_DIR}/cli11/CLI" SYMBOLIC)
add_library(CLI11::CLI11 INTERFACE IMPORTED GLOBAL)
target_include_directories(CLI11::CLI11 INTERFACE "${PROJECT_BINARY_DIR}/cli11")
