# What compiler and linker can do against damage in memory, for every target: it is hostile files that are read.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()

add_compile_options(-fstack-protector-strong)
check_cxx_compiler_flag(-fcf-protection ZUL_HAS_CONTROL_FLOW_PROTECTION) # not on every processor
if(ZUL_HAS_CONTROL_FLOW_PROTECTION)
    add_compile_options(-fcf-protection)
endif()

# Checked forms of the C library's functions exist in optimised code only. A sanitizer checks more with its own ones.
set(ZUL_FORTIFIED 0)
if(CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND NOT ZUL_SANITIZED)
    set(ZUL_FORTIFIED 1)
    add_compile_options("SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3") # some compilers bring a level along
endif()

# Every symbol is bound before the program begins, and what was bound is read-only from then on.
add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
