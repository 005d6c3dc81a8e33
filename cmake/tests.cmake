# One test program a layer; the sources mirror the source tree.

# What is tested is optimised; the tests themselves are not, which builds them in half the time.
set(ZUL_TEST_OPTIONS -O0 -U_FORTIFY_SOURCE ${ZUL_NOT_FUZZED})

# What tests share. It also carries the precompiled header of all test programs.
zul_sources(support_sources tests/support)
add_library(test_support STATIC ${support_sources})
target_include_directories(test_support PUBLIC tests/support Common/zullib/src ${ZUL_GENERATED_DIRECTORY})
target_link_libraries(test_support PUBLIC zullib GTest::gtest GTest::gmock)
target_compile_options(test_support PRIVATE ${ZUL_TEST_OPTIONS})
target_precompile_headers(test_support PRIVATE <gmock/gmock.h> <gtest/gtest.h> <cstddef> <cstdint> <cstring>
    <memory> <span> <stdexcept> <string> <string_view> <vector>)

# Leaves only those sources in the list VARIABLE that contain a match of the regular expression.
function(zul_keep_sources_with variable expression)
    foreach(source ${${variable}})
        file(STRINGS ${source} matches REGEX "${expression}" LIMIT_COUNT 1)
        if(matches)
            list(APPEND kept ${source})
        endif()
    endforeach()
    set(${variable} ${kept} PARENT_SCOPE)
endfunction()

# zul_test_program(NAME DIRECTORY LIBRARY...): the tests below tests/DIRECTORY, when there are any.
function(zul_test_program name directory)
    zul_sources_below(sources tests/${directory})
    if(ZUL_THREAD_TESTS_ONLY)
        zul_keep_sources_with(sources "<thread>|threads.h|pthread_create")
    endif()
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE test_support ${ARGN} GTest::gtest_main)
    target_compile_options(${name} PRIVATE ${ZUL_TEST_OPTIONS})
    target_precompile_headers(${name} REUSE_FROM test_support)
    if(ZUL_SANITIZED)
        # Four processes for all of them: a sanitizer takes longer to start than most tests to run.
        foreach(shard 0 1 2 3)
            add_test(NAME ${name}_${shard} COMMAND ${name} --gtest_brief=1)
            set_tests_properties(${name}_${shard} PROPERTIES TIMEOUT 900
                ENVIRONMENT "GTEST_TOTAL_SHARDS=4;GTEST_SHARD_INDEX=${shard}")
        endforeach()
    else()
        gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
    endif()
endfunction()

zul_test_program(platform_tests templates)
zul_test_program(zullib_tests Common/zullib)
# What makes calls for memory and about files fail is called before a sanitizer is ready.
zul_sources(fault_sources tests/support/faults)
set_source_files_properties(${fault_sources} PROPERTIES COMPILE_OPTIONS "${ZUL_NOT_SANITIZED}" SKIP_PRECOMPILE_HEADERS ON)

# Programs of their own, in which those calls can be made to fail.
function(zul_fault_test_program name directory)
    zul_test_program(${name} ${directory} ${ARGN} ${CMAKE_DL_LIBS})
    if(TARGET ${name})
        target_sources(${name} PRIVATE ${fault_sources})
        target_include_directories(${name} PRIVATE tests/support/faults)
    endif()
endfunction()

zul_fault_test_program(allocation_tests Common/zullib_allocations)
if(TARGET zulrt_static)
    zul_test_program(zulrt_tests Runtime/zulrt zulrt_static)
    if(TARGET zulrt_tests)
        target_include_directories(zulrt_tests PRIVATE ${PROJECT_SOURCE_DIR}/Runtime/zulrt/src)
        target_compile_definitions(zulrt_tests PRIVATE ZUL_RUNTIME_LIBRARY="$<TARGET_FILE:zulrt>")
        target_link_libraries(zulrt_tests PRIVATE ${CMAKE_DL_LIBS})
        add_dependencies(zulrt_tests zulrt)
    endif()
    zul_fault_test_program(runtime_allocation_tests Runtime/zulrt_allocations zulrt_static)
    if(TARGET runtime_allocation_tests)
        target_include_directories(runtime_allocation_tests PRIVATE ${PROJECT_SOURCE_DIR}/Runtime/zulrt/src)
    endif()
endif()
# A library that makes calls of other programs fail when it is preloaded. That is not for sanitized programs: their own
# functions come before preloaded ones.
if(TARGET zul_program)
    zul_fault_test_program(fault_tests faults zul_program)
    if(NOT ZUL_SANITIZED)
        zul_test_program(program_fault_tests program_faults zulrt_static)
    endif()
endif()
if(TARGET program_fault_tests)
    zul_sources(preloaded_sources tests/support/faults tests/support/preloaded_faults)
    add_library(preloaded_faults SHARED ${preloaded_sources})
    target_include_directories(preloaded_faults PRIVATE tests/support/faults)
    target_compile_options(preloaded_faults PRIVATE ${ZUL_TEST_OPTIONS})
    target_sources(program_fault_tests PRIVATE
        tests/faults/file_tree.cpp tests/faults/points.cpp tests/faults/scenario.cpp)
    target_include_directories(program_fault_tests PRIVATE tests/faults tests/support/faults Runtime/zulrt/src)
    target_compile_definitions(program_fault_tests PRIVATE
        FAULT_LIBRARY="$<TARGET_FILE:preloaded_faults>"
        ZUL_PROGRAM="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/zul"
        LOAD_DESIGN="${CMAKE_BINARY_DIR}/examples/load_design"
        ZUL_SAMPLE_DESIGN="${CMAKE_BINARY_DIR}/share/zulrt/sample.zul")
    add_dependencies(program_fault_tests preloaded_faults zul load_design sample_design)
endif()
# The C interface as C sees it: a program over the library that hosts load, and its header alone in both languages.
if(TARGET zulrt)
    file(GLOB c_interface_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/Runtime/zulrt/c_interface/*.c)
    add_executable(c_interface ${c_interface_sources})
    target_link_libraries(c_interface PRIVATE zulrt m)
    zul_c_program(c_interface)
    add_test(NAME CInterface.AnswersFromC
        COMMAND c_interface ${CMAKE_BINARY_DIR}/share/zulrt/sample.zul)
    # Paths that the library hands out are released with free(), which the address sanitizer takes for a mistake.
    set_tests_properties(CInterface.AnswersFromC PROPERTIES ENVIRONMENT ASAN_OPTIONS=alloc_dealloc_mismatch=0)
    foreach(language c cpp)
        add_library(header_alone_${language} OBJECT tests/headers/zulrt_alone.${language})
        target_link_libraries(header_alone_${language} PRIVATE zulrt)
        target_compile_options(header_alone_${language} PRIVATE -pedantic-errors)
    endforeach()
endif()
if(TARGET zul_program)
    zul_test_program(program_tests Tools/zul zul_program)
endif()
if(TARGET program_tests)
    target_compile_definitions(program_tests PRIVATE
        ZUL_SOURCE_DIRECTORY="${PROJECT_SOURCE_DIR}"
        ZUL_PROGRAM="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/zul"
        ZUL_SAMPLE_DESIGN="${CMAKE_BINARY_DIR}/share/zulrt/sample.zul")
    if(TARGET zul)
        add_dependencies(program_tests zul)
    endif()
endif()
# What is tried from outside: killing, full disks, many processes, and the files that were built.
if(TARGET zul_program)
    zul_test_program(crash_tests crashes zul_program)
endif()
if(TARGET crash_tests)
    target_include_directories(crash_tests PRIVATE Runtime/zulrt/src tests/Tools/zul)
    target_compile_definitions(crash_tests PRIVATE
        ZUL_RUNTIME_LIBRARY="$<TARGET_FILE:zulrt>"
        ZUL_PROGRAM="$<TARGET_FILE:zul>"
        ZUL_FORTIFIED=$<BOOL:${ZUL_FORTIFIED}>)
    add_dependencies(crash_tests zul zulrt)
endif()
zul_subdirectory(tests/support)
