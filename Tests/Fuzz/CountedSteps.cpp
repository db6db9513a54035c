#include "CountedSteps.h"

// The linker leads each of the fuzzer's calls through here (--wrap).
#ifdef KZMSP_COUNTS_STEPS
namespace {
std::uint64_t steps = 0;
}

extern "C" {
#define KZMSP_COUNTED(call, type)               \
    void __real_##call(type left, type right);  \
    void __wrap_##call(type left, type right);  \
    void __wrap_##call(type left, type right) { \
        ++steps;                                \
        __real_##call(left, right);             \
    }
KZMSP_COUNTED(__sanitizer_cov_trace_cmp1, std::uint8_t)
KZMSP_COUNTED(__sanitizer_cov_trace_cmp2, std::uint16_t)
KZMSP_COUNTED(__sanitizer_cov_trace_cmp4, std::uint32_t)
KZMSP_COUNTED(__sanitizer_cov_trace_cmp8, std::uint64_t)
KZMSP_COUNTED(__sanitizer_cov_trace_const_cmp1, std::uint8_t)
KZMSP_COUNTED(__sanitizer_cov_trace_const_cmp2, std::uint16_t)
KZMSP_COUNTED(__sanitizer_cov_trace_const_cmp4, std::uint32_t)
KZMSP_COUNTED(__sanitizer_cov_trace_const_cmp8, std::uint64_t)
#undef KZMSP_COUNTED
}

std::uint64_t countedSteps() noexcept {
    return steps;
}
#else
std::uint64_t countedSteps() noexcept {
    return 0;
}
#endif
