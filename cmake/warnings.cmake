# Every warning that both compilers give cleanly is an error, for every target of the project.
# Headers of the system and of imported targets are system headers: nothing is reported there.
option(ZUL_WARNINGS_AS_ERRORS "Refuse code that warns" ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wcast-qual -Wcast-align
    -Wformat=2 -Wdouble-promotion -Wundef)
add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>)
if(ZUL_WARNINGS_AS_ERRORS)
    add_compile_options(-Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # GoogleTest's typed and parameterised suites leave the last macro argument out.
    add_compile_options(-Wno-gnu-zero-variadic-macro-arguments)
endif()
