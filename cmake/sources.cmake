# Sources are found, not listed: a new file takes part in the next build.

# Sets VARIABLE to the C++ sources that lie directly in the given directories, which may be missing.
function(zul_sources variable)
    list(TRANSFORM ARGN APPEND /*.cpp)
    list(TRANSFORM ARGN PREPEND ${PROJECT_SOURCE_DIR}/)
    file(GLOB found CONFIGURE_DEPENDS ${ARGN})
    set(${variable} ${found} PARENT_SCOPE)
endfunction()

# Sets VARIABLE to the C++ sources anywhere below the given directory, which may be missing.
function(zul_sources_below variable directory)
    file(GLOB_RECURSE found CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${directory}/*.cpp)
    set(${variable} ${found} PARENT_SCOPE)
endfunction()

# Adds a directory that describes its own targets.
function(zul_subdirectory directory)
    if(EXISTS ${PROJECT_SOURCE_DIR}/${directory}/CMakeLists.txt)
        add_subdirectory(${directory})
    endif()
endfunction()
