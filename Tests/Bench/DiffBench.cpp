// diff-bench: compares two documents of 100,000 tasks, with the same ids and with ids given anew, and prints how long
// that takes, reading included, in terms of reading both alone, and a verdict for each.
//
// Usage: diff-bench <scratch folder> [<tasks>]
//
// The plans differ in nearly every task; those whose ids were given anew are matched by place and name. Reading and
// comparing run in turn; the figure is the median of the ratios.
#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "FixedClock.h"
#include "ImportRun.h"
#include "KZDXDiff.h"
#include "MSPCLog.h"
#include "MSPCRandomSource.h"
#include "MSPDIMemoryImport.h"
#include "MapUserDefaults.h"
#include "PlanGenerator.h"

namespace fs = std::filesystem;

namespace {

using Files = std::map<std::string, std::string>;

class NoLog final : public MSPCLog {
protected:
    void write(std::string_view /*message*/) override {}
};

// A document of a generated plan.
Files documentOf(const fs::path& scratch, std::int64_t tasks, std::uint64_t seed) {
    const auto path = scratch / "diff-bench.xml";
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    generatePlan({.tasks = tasks, .seed = seed},
                 [file](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), file); });
    std::fclose(file);
    const FixedClock clock{MSPCInstant{1326193200}};
    NoLog log;
    const MapUserDefaults settings;
    MSPCDiskFileSystem fileSystem;
    MSPCCryptoRandomSource randomSource;
    const MSPCServices services{clock, MSPCTimeZone::fixed(0), log, settings, fileSystem, randomSource};
    auto import = MSPDIImportInMemory(path, services);
    fs::remove(path);
    return std::move(import.bundle);
}

KZDXOpenDocument opened(const Files& files) {
    std::string failure;
    const auto source = KZDXFilesInMemory(files);
    auto document = KZDXOpenDocument::open(*source, "", failure);
    if (!document) {
        fmt::print("{}\n", failure);
        std::exit(1);
    }
    return std::move(*document);
}

// The same document with other ids of all tasks and resources.
Files renumbered(Files files) {
    constexpr std::string_view beginning = "=\"";
    for (auto& [name, content] : files) {
        std::string other;
        std::size_t taken = 0;
        for (auto at = content.find(beginning); at != std::string::npos; at = content.find(beginning, at + 1)) {
            const auto letter = at + beginning.size();
            const bool isId = letter + 1 < content.size() && (content[letter] == 't' || content[letter] == 'r') &&
                              content[letter + 1] >= '0' && content[letter + 1] <= '9';
            if (isId) {
                other.append(content, taken, letter + 1 - taken).append("9000000");
                taken = letter + 1;
            }
        }
        content = other.append(content, taken);
    }
    return files;
}

struct Timing {
    double reading = 0;
    double whole = 0;
    std::size_t differences = 0;
};

Timing timed(const Files& old, const Files& now) {
    using Clock = std::chrono::steady_clock;
    const auto secondsSince = [](Clock::time_point start) {
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    Timing timing;
    const auto start = Clock::now();
    const auto before = opened(old);
    const auto after = opened(now);
    timing.reading = secondsSince(start);
    timing.differences = KZDXDiff(before, after).size();
    timing.whole = secondsSince(start);
    return timing;
}

void measure(const Files& old, const Files& now, std::string_view name) {
    constexpr int rounds = 7;
    std::vector<double> readings;
    std::vector<double> wholes;
    std::vector<double> ratios;
    std::size_t differences = 0;
    for (int round = 0; round < rounds; ++round) {
        const auto timing = timed(old, now);
        readings.push_back(timing.reading);
        wholes.push_back(timing.whole);
        ratios.push_back(timing.whole / timing.reading);
        differences = timing.differences;
    }
    fmt::print("{}: reading both {:.2f} s, with {} differences {:.2f} s, ratio {:.2f}\n", name, median(readings),
               differences, median(wholes), median(ratios));
    verdict(median(ratios) <= 3, "at most 3 times reading both");
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount < 2) {
        fmt::print(stderr, "Usage: diff-bench <scratch folder> [<tasks>]\n");
        return 2;
    }
    const std::int64_t tasks = argumentCount > 2 ? std::atoll(arguments[2]) : 100'000;
    const auto old = documentOf(arguments[1], tasks, 1);
    const auto now = documentOf(arguments[1], tasks, 2);
    measure(old, now, fmt::format("{} tasks against {}", tasks, tasks));
    measure(old, renumbered(now), "the same with ids given anew");
    return areAllTargetsMet() ? 0 : 1;
}
