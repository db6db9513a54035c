// A plan's bytes, and what mending makes of them: a plan that imports and needs no mending, or a reason why there is
// none.

#include <algorithm>

#include "CountedSteps.h"
#include "DocumentSteps.h"
#include "FuzzWorld.h"
#include "MSPDIMemoryImport.h"
#include "MSPDIMend.h"

namespace {

bool imports(const std::string& bytes, FuzzWorld& world) {
    return MSPDIImportBytesInMemory("Plan.xml", bytes, world.services, MSPDIMemoryKeeping::Names).isImported();
}

// The lines of a text that stand in another one in the same order.
std::size_t linesKept(std::string_view text, std::string_view other) {
    std::size_t kept = 0;
    while (!text.empty()) {
        const auto size = std::min(text.find('\n'), text.size() - 1) + 1;
        const auto found = other.find(text.substr(0, size));
        if (found != std::string_view::npos) {
            other.remove_prefix(found + size);
            ++kept;
        }
        text.remove_prefix(size);
    }
    return kept;
}

std::size_t linesOf(std::string_view text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + (text.ends_with('\n') ? 0U : 1U);
}

// So many lines may a step have touched: where a number is changed, those of all that name it.
void requireThatOthersStay(const std::string& plan, const MSPDIMended& mended) {
    std::size_t touched = 0;
    bool isLocal = !mended.isConverted && !mended.isRepaired;
    for (const auto& done : mended.steps) {
        isLocal = isLocal && (done.step == "root-task" || done.step == "unreadable-value");
        touched += 2 * done.count;
    }
    require(!isLocal || linesKept(plan, mended.bytes) + touched >= linesOf(plan), "what no step names stays");
}

void requireThatItIsThrough(const std::string& plan, const MSPDIMended& mended, const MSPDIMendOptions& options,
                            FuzzWorld& world) {
    require(!mended.steps.empty() && mended.obstacle.empty(), "a mended plan tells what was done");
    require(imports(mended.bytes, world), "a mended plan imports");
    const auto again = MSPDIMendPlan("Plan.xml", mended.bytes, world.services, options).verdict;
    require(again == MSPDIMendVerdict::ImportsAsIs || (options.isAll && again == MSPDIMendVerdict::Mended),
            "a mended plan needs no mending, though improvements may make others possible");
    requireThatOthersStay(plan, mended);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzWorld world;
    const std::string plan(textOf(bytes, size));
    MSPDIMendOptions options;
    // Every other input is improved, too, which takes longer; whether it imports by itself is asked of the others.
    options.isAll = size % 2 == 1;
    const CountedSteps steps;
    const auto mended = MSPDIMendPlan("Plan.xml", plan, world.services, options);
    // Three imports, and the looks between them.
    if (const auto more = stepsBeyondBytes(plan)) {
        requireStepsThatGrowWith(size + mended.bytes.size(), steps.count(), {4'000'000 + 6 * *more, 2'000});
    }
    require(plan == textOf(bytes, size), "the plan stays as it is");
    switch (mended.verdict) {
        case MSPDIMendVerdict::ImportsAsIs:
            require(mended.steps.empty() && mended.bytes.empty(), "what imports is left alone");
            require(options.isAll || imports(plan, world), "what is said to import does");
            break;
        case MSPDIMendVerdict::NotMendable:
            require(options.isAll || !imports(plan, world), "what imports is not called a plan that cannot be mended");
            require(!mended.obstacle.empty() && mended.bytes.empty(), "an obstacle has its sentence");
            break;
        case MSPDIMendVerdict::Mended:
            require(options.isAll || imports(plan, world) == !mended.refusal, "a refusal is told");
            requireThatItIsThrough(plan, mended, options, world);
            break;
    }
    return 0;
}
