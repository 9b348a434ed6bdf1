# Static checks of everything, whatever is built. Those that take long are labelled slow,
# and quick is what others do more thoroughly.

# add_check(<name> <program> <argument>...)
function(add_check name program)
    find_program(check_${program} ${program})
    if(check_${program})
        add_test(NAME ${name} COMMAND "${check_${program}}" ${ARGN}
            WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}")
    else()
        add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "SKIPPED: there is no ${program}")
        set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "SKIPPED:")
    endif()
endfunction()

set(folders bench examples host include src stand_in tests)
list(TRANSFORM folders REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/\\1/*.[ch]" OUTPUT_VARIABLE c_files)
list(TRANSFORM folders REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/\\1/*.[ch]pp" OUTPUT_VARIABLE cpp_files)
file(GLOB_RECURSE sources ${c_files} ${cpp_files})
add_check(clang-format clang-format --dry-run -Werror ${sources})

file(GLOB scripts "${PROJECT_SOURCE_DIR}/scripts/*.sh")
add_check(shellcheck shellcheck -x run test .ci/run bench/run scripts/package scripts/screenshot ${scripts})

add_check(yamllint yamllint --strict -d "{extends: relaxed, rules: {line-length: disable}}" .github)

# What ships, and everything; ninja remembers what had no findings.
foreach(preset lint lint-all)
    add_check(${preset} cmake --workflow --preset ${preset} --fresh)
    set_tests_properties(${preset} PROPERTIES RESOURCE_LOCK lint COST 1000 TIMEOUT 1200)
endforeach()

# By the one build that compiles each file by itself.
add_check(cppcheck cppcheck --project=build/native/compile_commands.json
    "--file-filter=src/*" "--file-filter=host/*" "--file-filter=tests/*" --enable=warning,portability
    # Buffers that are filled when they are used.
    --suppress=uninitMemberVar
    --inline-suppr --library=googletest --error-exitcode=1 --quiet)
set_tests_properties(lint PROPERTIES LABELS quick)
set_tests_properties(lint-all cppcheck PROPERTIES LABELS slow)
