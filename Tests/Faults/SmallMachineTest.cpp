// Runs with hardly any stack or address space: they succeed, or end with a reason and exit status 1, never by a signal.
#include <sys/resource.h>

#include "FaultFixture.h"

namespace fs = std::filesystem;

namespace {

class SmallMachineTest : public FaultFixture {
protected:
    [[nodiscard]] ProgramEnd runWith(__rlimit_resource resource, rlim_t bytes) const {
        auto options = importOf("Plan.xml");
        options.prepare = [resource, bytes] {
            const rlimit limit{bytes, bytes};
            setrlimit(resource, &limit);
        };
        return SpawnedProgram(options).wait();
    }
};

bool givesAReason(const ProgramEnd& end) {
    return end.log.find("Exception: ") != std::string::npos;
}

// The loader ends a program for which there is no room before it can say anything.
constexpr int NotLoaded = 127;

}  // namespace

TEST_F(SmallMachineTest, aSmallStackIsEnough) {
    for (const rlim_t kilobytes : {96UL, 128UL, 256UL}) {
        resetOutput();
        const auto end = runWith(RLIMIT_STACK, kilobytes * 1024);
        EXPECT_EQ(end.signal, 0) << kilobytes;
        EXPECT_EQ(end.status, 0) << kilobytes << end.log;
    }
}

TEST_F(SmallMachineTest, anAddressSpaceThatEndsAtAnyStageIsAReason) {
    const int steps = countOf("ADDRESS_SPACES", 150);
    int failures = 0;
    int successes = 0;
    for (int step = 0; step < steps; ++step) {
        resetOutput();
        const rlim_t kilobytes = 46'000 + static_cast<rlim_t>(step) * 18'000 / static_cast<rlim_t>(steps);
        const auto end = runWith(RLIMIT_AS, kilobytes * 1024);
        EXPECT_EQ(end.signal, 0) << kilobytes << end.log;
        EXPECT_TRUE(end.status == 0 || end.status == NotLoaded || (end.status == 1 && givesAReason(end)))
            << kilobytes << " " << end.status << end.log;
        failures += end.status == 1 ? 1 : 0;
        successes += end.status == 0 ? 1 : 0;
    }
    EXPECT_GT(failures, 0);
    EXPECT_GT(successes, 0);
}
