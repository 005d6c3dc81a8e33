# The platform that the library is built for, stated here and nowhere else.
set(ZUL_LIBRARY_PATTERN "%s/lib%s.dylib" CACHE STRING
    "Path of an extracted design library: printf pattern of its directory and its short name")
set(ZUL_MARKER_LIBRARY "libqel.dylib" CACHE STRING "File name of the marker library")
set(ZUL_SYSTEM_CODE 516 CACHE STRING
    "Operating system and processor that the libraries of a design have to be built for")

set(ZUL_GENERATED_DIRECTORY ${CMAKE_BINARY_DIR}/generated)
configure_file(${PROJECT_SOURCE_DIR}/Common/zullib/src/platform_description.h.in
    ${ZUL_GENERATED_DIRECTORY}/platform_description.h @ONLY)
