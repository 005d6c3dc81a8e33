# Language, optimisation and places that hold for every target.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release CACHE STRING "Release, Debug" FORCE)
endif()
string(REPLACE "-O3" "-O2" CMAKE_C_FLAGS_RELEASE "${CMAKE_C_FLAGS_RELEASE}")
string(REPLACE "-O3" "-O2" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")

# A sanitizer brings functions along that only the program has, and for those of C++ has to be linked as C++.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    set(ZUL_SANITIZED ON)
    set(ZUL_NOT_SANITIZED -fno-sanitize=all)
endif()
function(zul_c_program name)
    if(ZUL_SANITIZED)
        set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX)
    endif()
endfunction()

# What guides a fuzzer is of use in the libraries only; elsewhere it costs the compiler a third of its time.
set(ZUL_NOT_FUZZED $<$<BOOL:${ZUL_FUZZ}>:-fno-sanitize=fuzzer-no-link>)

set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

# zul_as_one_source(TARGET): compiles a library as one source when it is to be fast. What a load does for each tag is spread
# over many sources, and only so inlined where it is used. It also takes a fraction of the time, so it is done for the
# sanitizers too.
function(zul_as_one_source target)
    if(CMAKE_BUILD_TYPE STREQUAL "Release" OR ZUL_SANITIZED)
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 0)
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    endif()
endfunction()
