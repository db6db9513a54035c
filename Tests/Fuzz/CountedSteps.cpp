#include "CountedSteps.h"

#include <string>

#include "Property.h"

namespace {

std::uint64_t steps = 0;
// The fuzzer learns from the numbers that an input has compared, and each takes longer to tell than to compare. What
// compares more than this does so in a loop, of which the fuzzer has seen enough.
constexpr std::uint64_t stepsTold = 300'000;
std::uint64_t toldUntil = stepsTold;

}  // namespace

#ifdef KZMSP_COUNTS_STEPS

// The linker leads what is built for the fuzzer through here (--wrap). Calls that go on are jumps, so that the fuzzer
// sees who has called.
namespace {

void countBytes(std::size_t bytes) {
    constexpr std::size_t bytesOfStep = 16;
    steps += bytes / bytesOfStep;
}

}  // namespace

extern "C" {
void __wrap___sanitizer_cov_trace_pc();
void __wrap___sanitizer_cov_trace_pc() {
    ++steps;
}

#define KZMSP_TOLD(call, type)                                     \
    void __real_##call(type left, type right);                     \
    void __wrap_##call(type left, type right);                     \
    void __wrap_##call(type left, type right) {                    \
        if (steps < toldUntil) {                                   \
            [[clang::musttail]] return __real_##call(left, right); \
        }                                                          \
    }
KZMSP_TOLD(__sanitizer_cov_trace_cmp1, std::uint8_t)
KZMSP_TOLD(__sanitizer_cov_trace_cmp2, std::uint16_t)
KZMSP_TOLD(__sanitizer_cov_trace_cmp4, std::uint32_t)
KZMSP_TOLD(__sanitizer_cov_trace_cmp8, std::uint64_t)
KZMSP_TOLD(__sanitizer_cov_trace_const_cmp1, std::uint8_t)
KZMSP_TOLD(__sanitizer_cov_trace_const_cmp2, std::uint16_t)
KZMSP_TOLD(__sanitizer_cov_trace_const_cmp4, std::uint32_t)
KZMSP_TOLD(__sanitizer_cov_trace_const_cmp8, std::uint64_t)
#undef KZMSP_TOLD

#define KZMSP_OF_BYTES(result, call, pointer)                                 \
    result __real_##call(pointer left, const void* right, std::size_t size);  \
    result __wrap_##call(pointer left, const void* right, std::size_t size);  \
    result __wrap_##call(pointer left, const void* right, std::size_t size) { \
        countBytes(size);                                                     \
        [[clang::musttail]] return __real_##call(left, right, size);          \
    }
KZMSP_OF_BYTES(void*, __asan_memcpy, void*)
KZMSP_OF_BYTES(void*, __asan_memmove, void*)
KZMSP_OF_BYTES(int, memcmp, const void*)
#undef KZMSP_OF_BYTES

std::size_t __real_strlen(const char* text);
std::size_t __wrap_strlen(const char* text);
std::size_t __wrap_strlen(const char* text) {
    const auto length = __real_strlen(text);
    countBytes(length);
    return length;
}

void* __real_memchr(const void* bytes, int value, std::size_t size);
void* __wrap_memchr(const void* bytes, int value, std::size_t size);
void* __wrap_memchr(const void* bytes, int value, std::size_t size) {
    auto* const found = __real_memchr(bytes, value, size);
    countBytes(found == nullptr
                   ? size
                   : static_cast<std::size_t>(static_cast<char*>(found) - static_cast<const char*>(bytes)));
    return found;
}
}

#endif

CountedSteps::CountedSteps() noexcept : _before(steps) {
    toldUntil = steps + stepsTold;
}

std::uint64_t CountedSteps::count() const noexcept {
    return steps - _before;
}

void requireStepsThatGrowWith(std::size_t bytes, std::uint64_t taken, StepBound bound) {
    require(taken <= bound.ofAny + bound.ofByte * bytes,
            "the steps grow with the bytes read and written: " + std::to_string(taken) + " steps for " +
                std::to_string(bytes) + " bytes");
}
