# kzmsp_harden(<target>) makes a mistake that a hostile plan could find end the program instead of obeying the plan; for
# the libraries and programs of every build that people use, that is all but those with sanitizers, fuzzers or coverage,
# which watch more than this.
#
# Position-independent, bound at the start and then read-only; canaries behind arrays; sizes checked in the C library's
# calls and indices in the C++ library's containers; stacks probed page by page; returns and indirect jumps to where they
# may go only.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)
set(kzmsp_hardening "")
set(kzmsp_hardening_link -pie -Wl,-z,relro,-z,now,-z,noexecstack)
if(KZMSP_HARDENED AND NOT (KZMSP_SANITIZE OR KZMSP_FUZZ OR KZMSP_COVERAGE))
    list(APPEND kzmsp_hardening -fPIE -fstack-protector-strong -D_GLIBCXX_ASSERTIONS)
    foreach(flag -fstack-clash-protection -fcf-protection=full -mbranch-protection=standard)
        string(MAKE_C_IDENTIFIER "KZMSP_HAS${flag}" has_flag)
        check_cxx_compiler_flag("-Werror ${flag}" ${has_flag})
        if(${has_flag})
            list(APPEND kzmsp_hardening ${flag})
        endif()
    endforeach()
    # Debian 12's start files have no marks for indirect jumps, so that only the returns of the whole can be promised.
    check_linker_flag(CXX -Wl,-z,shstk,--fatal-warnings KZMSP_HAS_SHADOW_STACK)
    if(KZMSP_HAS_SHADOW_STACK)
        list(APPEND kzmsp_hardening_link -Wl,-z,shstk)
    endif()

    # Level 3 knows the sizes of what is allocated at run time too; older C libraries and compilers have level 2. Both
    # need an optimizing compiler, and one that has a level of its own is told ours instead.
    set(CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -Werror")
    check_cxx_source_compiles("#include <cstdlib>
#if __USE_FORTIFY_LEVEL < 3
#error
#endif
int main() {}" KZMSP_HAS_FORTIFY_3)
    unset(CMAKE_REQUIRED_FLAGS)
    set(level $<IF:$<BOOL:${KZMSP_HAS_FORTIFY_3}>,3,2>)
    list(APPEND kzmsp_hardening
         $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=${level}>)
endif()

function(kzmsp_harden target)
    if(kzmsp_hardening)
        target_compile_options(${target} PRIVATE ${kzmsp_hardening})
        get_target_property(type ${target} TYPE)
        if(type STREQUAL EXECUTABLE)
            target_link_options(${target} PRIVATE ${kzmsp_hardening_link})
        endif()
    endif()
endfunction()
