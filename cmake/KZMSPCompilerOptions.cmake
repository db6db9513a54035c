# One interface target carries the warnings and the instrumentation of every target of ours.
add_library(kzmsp_options INTERFACE)
target_compile_options(kzmsp_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
    -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor)
if(KZMSP_WERROR)
    target_compile_options(kzmsp_options INTERFACE -Werror)
endif()
# Numbers too large for the integer they become are undefined too, but only on request.
set(kzmsp_sanitizers -fsanitize=address,undefined,float-cast-overflow)
if(KZMSP_SANITIZE)
    target_compile_options(kzmsp_options INTERFACE
        ${kzmsp_sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kzmsp_options INTERFACE ${kzmsp_sanitizers})
    # With the sanitizers g++ 12 sees uninitialised values in the standard library's own headers.
    target_compile_options(kzmsp_options INTERFACE -Wno-maybe-uninitialized)
endif()
if(KZMSP_FUZZ)
    target_compile_options(kzmsp_options INTERFACE
        ${kzmsp_sanitizers} -fsanitize=fuzzer-no-link -fsanitize-coverage=trace-pc -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kzmsp_options INTERFACE ${kzmsp_sanitizers} -fsanitize=fuzzer-no-link)
endif()
if(KZMSP_COVERAGE)
    target_compile_options(kzmsp_options INTERFACE --coverage -O0)
    target_link_options(kzmsp_options INTERFACE --coverage)
endif()
