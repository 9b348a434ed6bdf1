# The static checks, as tests.

# add_check(<name> <program that it needs> <command>...)
function(add_check name program)
    find_program(check_${program} ${program})
    if(check_${program})
        add_test(NAME ${name} COMMAND ${ARGN} WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
    else()
        add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "SKIPPED: there is no ${program}")
        set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "SKIPPED:")
    endif()
endfunction()

# On the files of this build, which tells cppcheck how they are compiled. It reports no member
# that is set only when it is used, and no file with many branches.
set(filters src host tests)
list(TRANSFORM filters REPLACE "(.+)" "--file-filter=${PROJECT_SOURCE_DIR}/\\1/*")
if(WIN32)
    list(APPEND filters -D_WIN32)
endif()
add_check(cppcheck cppcheck cppcheck "--project=${PROJECT_BINARY_DIR}/compile_commands.json" ${filters}
    --enable=warning,portability --suppress=uninitMemberVar --suppress=normalCheckLevelMaxBranches
    --inline-suppr --library=googletest --error-exitcode=1 --quiet)
if(NOT WIN32)
    return()
endif()

set(folders bench examples host include src stand_in tests)
list(TRANSFORM folders REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/\\1/*.[ch]" OUTPUT_VARIABLE c_files)
list(TRANSFORM folders REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/\\1/*.[ch]pp" OUTPUT_VARIABLE cpp_files)
file(GLOB_RECURSE sources ${c_files} ${cpp_files})
add_check(clang-format clang-format-19 clang-format-19 --dry-run -Werror ${sources})

file(GLOB scripts "${PROJECT_SOURCE_DIR}/scripts/*.sh")
add_check(shellcheck shellcheck shellcheck -x run test .ci/run bench/run scripts/package scripts/screenshot ${scripts})

add_check(yamllint yamllint yamllint --strict -d "{extends: relaxed, rules: {line-length: disable}}" .github)

# clang-tidy runs in two builds, which do not check unchanged files again.
foreach(preset lint lint-native)
    add_check(${preset} clang-tidy-19 sh -c "cmake --preset ${preset} && ninja -C build/${preset} -k 0")
    set_tests_properties(${preset} PROPERTIES COST 1000 TIMEOUT 1200)
endforeach()
set_tests_properties(lint-native PROPERTIES LABELS slow)
