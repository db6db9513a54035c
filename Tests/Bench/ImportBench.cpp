// import-bench: measures imports of generated plans against the floor and prints a line each and a verdict per target.
//
// Usage: import-bench <program> <template> <floor> <linked-only> <scratch folder> [--pairs N] [--only TEXT]
//                     [--largest TASKS] [--huge]
// `mspdi` is looked for beside the program.
//
// An import and the floor of the same plan run in turn; each figure is the median over the pairs, each ratio the median
// of the pairs' ratios. --only takes part of a line's name: "list", "losses" or "mend" for all of those, "growth" for
// all growth, or "growth, flat";
// --largest bounds the plans whose growth is measured, and --huge adds the plan of 1,000,000 tasks.
#include <fmt/format.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "GrowthBench.h"
#include "ImportRun.h"
#include "LossesBench.h"
#include "MendBench.h"

namespace fs = std::filesystem;

namespace {

// The kinds of plan that have targets against the floor, and whose growth is measured.
constexpr std::array<Row, 3> floorRows = {{
    {"actual scenario only", {.tasks = 100'000}, 1.5, 0.6},
    {"timephased, 5 % split", {.tasks = 100'000, .timephasedRecords = 5, .splitPercent = 5}, 1.8, 0.6},
    {"11 baselines", {.tasks = 20'000, .baselines = 11}, 2.0, 0},
}};

bool isWanted(const Setup& setup, std::string_view name) {
    return name.find(setup.only) != std::string_view::npos;
}

// The sizes of the documents that the last import wrote.
std::vector<std::string> writtenSizes(const Setup& setup) {
    std::vector<std::string> sizes;
    for (const auto& entry : fs::recursive_directory_iterator(setup.scratch / "out")) {
        if (entry.is_regular_file()) {
            sizes.push_back(std::to_string(entry.file_size()));
        }
    }
    return sizes;
}

void measureAgainstFloor(const Setup& setup, const Row& row) {
    const PlanFile plan(setup, row.options);
    std::vector<double> importSeconds;
    std::vector<double> floorSeconds;
    std::vector<double> importMemory;
    std::vector<double> floorMemory;
    std::vector<double> timeRatios;
    for (int pair = 0; pair <= setup.pairs; ++pair) {
        const auto import = timedImport(setup, plan.path());
        std::vector<std::string> floorCommand = {setup.floor, plan.path(), (setup.scratch / "out").string()};
        for (const auto& size : writtenSizes(setup)) {
            floorCommand.push_back(size);
        }
        const auto floor = timedRun(floorCommand);
        if (pair == 0) {
            continue;  // warms the file cache
        }
        importSeconds.push_back(import.seconds);
        floorSeconds.push_back(floor.seconds);
        importMemory.push_back(import.peakMebibytes);
        floorMemory.push_back(floor.peakMebibytes);
        timeRatios.push_back(import.seconds / floor.seconds);
    }
    const auto timeRatio = median(timeRatios);
    const auto memoryRatio = median(importMemory) / median(floorMemory);
    fmt::print(
        "{:>9} tasks, {:<24} {:7.1f} MB  import {:6.2f} s  floor {:6.2f} s  ratio {:4.2f}   "
        "import {:6.0f} MiB  floor {:6.0f} MiB  ratio {:4.2f}\n",
        row.options.tasks, row.name, plan.megabytes(), median(importSeconds), median(floorSeconds), timeRatio,
        median(importMemory), median(floorMemory), memoryRatio);
    verdict(timeRatio <= row.maxTimeRatio, fmt::format("time at most {} times the floor", row.maxTimeRatio));
    if (row.maxMemoryRatio > 0) {
        verdict(memoryRatio <= row.maxMemoryRatio,
                fmt::format("memory at most {} times the floor", row.maxMemoryRatio));
    }
}

void measureHugePlan(const Setup& setup) {
    const PlanFile plan(setup, {.tasks = 1'000'000});
    const auto figures = timedImport(setup, plan.path());
    fmt::print("1,000,000 tasks {:.1f} MB: {:.1f} s, {:.0f} MiB\n", plan.megabytes(), figures.seconds,
               figures.peakMebibytes);
    verdict(figures.exitStatus == 0 && figures.peakMebibytes < 6 * 1024, "finishes in less than 6 GiB");
}

// A list of generated plans of 30 tasks in files that go away with this object.
class PlanList {
public:
    PlanList(const Setup& setup, std::int64_t count);
    PlanList(const PlanList&) = delete;
    PlanList& operator=(const PlanList&) = delete;
    ~PlanList() { fs::remove_all(_folder); }

    [[nodiscard]] std::string path() const { return _path.string(); }

private:
    fs::path _folder;
    fs::path _path;
};

PlanList::PlanList(const Setup& setup, std::int64_t count)
    : _folder(setup.scratch / "plans"), _path(setup.scratch / "list.txt") {
    fs::create_directories(_folder);
    std::FILE* const list = std::fopen(_path.c_str(), "wb");
    for (std::int64_t i = 0; i < count; ++i) {
        const auto path = _folder / fmt::format("plan{}.xml", i);
        std::FILE* const file = std::fopen(path.c_str(), "wb");
        generatePlan({.tasks = 30, .seed = static_cast<std::uint64_t>(i + 1)},
                     [file](std::string_view piece) { std::fwrite(piece.data(), 1, piece.size(), file); });
        std::fclose(file);
        fmt::print(list, "{}\n", path.string());
    }
    std::fclose(list);
}

// A run with an output folder that is empty, on a disk that has nothing to do any more for the run before.
ProcessFigures timedRunIntoEmpty(const Setup& setup, std::vector<std::string> command) {
    command.push_back(emptiedOutput(setup).string());
    ::sync();
    return timedRun(command);
}

ProcessFigures timedList(const Setup& setup, const PlanList& plans) {
    return timedRunIntoEmpty(setup,
                             {setup.program, "--template-path", setup.kdzxTemplate, "--input-list", plans.path()});
}

ProcessFigures timedList(const Setup& setup, std::int64_t count) {
    return timedList(setup, PlanList(setup, count));
}

void measureList(const Setup& setup) {
    const auto few = timedList(setup, 100);
    const auto many = timedList(setup, 1000);
    fmt::print("1,000 plans of 30 tasks in one list: {:.2f} ms a plan, {:.1f} MiB (100 plans: {:.1f} MiB)\n",
               many.seconds, many.peakMebibytes, few.peakMebibytes);
    verdict(many.exitStatus == 0 && many.seconds <= 3, "at most 3 ms a plan");
    verdict(many.peakMebibytes <= few.peakMebibytes + 2, "memory flat over the list");
}

ProcessFigures timedMigration(const Setup& setup, const PlanList& plans, const std::vector<std::string>& options) {
    std::vector<std::string> command = {(fs::path(setup.program).parent_path() / "mspdi").string(), "migrate",
                                        plans.path()};
    command.insert(command.end(), options.begin(), options.end());
    command.emplace_back("-o");
    return timedRunIntoEmpty(setup, std::move(command));
}

// The list by one process against `mspdi migrate` by one for each processor. Wall-clock times are those of a machine
// that has nothing else to do; the processor time says how much of it there is to share.
void measureMigration(const Setup& setup, const std::vector<std::string>& options, double mostTimes) {
    constexpr std::int64_t count = 10'000;
    constexpr int pairs = 5;
    const PlanList plans(setup, count);
    std::vector<double> wall;
    std::vector<double> processors;
    bool isWhole = true;
    for (int pair = 0; pair < pairs; ++pair) {
        const auto list = timedList(setup, plans);
        const auto migration = timedMigration(setup, plans, options);
        isWhole = isWhole && list.exitStatus == 0 && migration.exitStatus == 0;
        wall.push_back(migration.seconds / list.seconds);
        processors.push_back(migration.processorSeconds / list.processorSeconds);
    }
    fmt::print(
        "migration of {} plans of 30 tasks{}: {:.2f} times the time of one list, {:.2f} times its processor time\n",
        count, options.empty() ? "" : ", " + options.front(), median(wall), median(processors));
    verdict(isWhole && median(wall) <= mostTimes,
            fmt::format("at most {} times the time on two processors", mostTimes));
}

void measureSmallPlan(const Setup& setup) {
    const PlanFile plan(setup, {.tasks = 30});
    std::vector<double> ratios;
    std::vector<double> import;
    std::vector<double> linked;
    for (int pair = 0; pair < 40; ++pair) {
        import.push_back(timedImport(setup, plan.path()).seconds);
        linked.push_back(timedRun({setup.linkedOnly}).seconds);
        ratios.push_back(import.back() / linked.back());
    }
    fmt::print(
        "one plan of 30 tasks: {:.2f} ms, a program that only links the same libraries {:.2f} ms, ratio {:.2f}\n",
        1000 * median(import), 1000 * median(linked), median(ratios));
    verdict(median(ratios) <= 4, "at most 4 times a program that only links the same libraries");
}

void measureAll(const Setup& setup) {
    for (const auto& row : floorRows) {
        if (isWanted(setup, row.name)) {
            measureAgainstFloor(setup, row);
        }
    }
    if (isWanted(setup, "list")) {
        measureList(setup);
    }
    if (isWanted(setup, "migration")) {
        measureMigration(setup, {"--no-losses"}, 0.75);
        measureMigration(setup, {}, 1.5);
    }
    if (isWanted(setup, "small")) {
        measureSmallPlan(setup);
    }
    measureAllLosses(setup);
    measureAllMends(setup);
    measureAllGrowth(setup, floorRows);
    if (setup.isHuge) {
        measureHugePlan(setup);
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    if (arguments.size() < 6) {
        fmt::print(stderr,
                   "Usage: import-bench <program> <template> <floor> <linked-only> <scratch folder> [--pairs N] "
                   "[--only TEXT] [--largest TASKS] [--huge]\n");
        return 2;
    }
    Setup setup{.program = arguments[1],
                .kdzxTemplate = arguments[2],
                .floor = arguments[3],
                .linkedOnly = arguments[4],
                .scratch = fs::path(arguments[5]) / fmt::format("import-bench-{}", getpid()),
                .only = {}};
    for (std::size_t i = 6; i < arguments.size(); ++i) {
        const std::string_view option = arguments[i];
        if (option == "--huge") {
            setup.isHuge = true;
        } else if (option == "--pairs" && i + 1 < arguments.size()) {
            setup.pairs = std::atoi(arguments[++i]);
        } else if (option == "--only" && i + 1 < arguments.size()) {
            setup.only = arguments[++i];
        } else if (option == "--largest" && i + 1 < arguments.size()) {
            setup.largestSize = std::atoll(arguments[++i]);
        }
    }
    fs::create_directories(setup.scratch);
    measureAll(setup);
    fs::remove_all(setup.scratch);
    fmt::print("{}\n", areAllTargetsMet() ? "All targets met." : "Some targets were missed.");
    return areAllTargetsMet() ? 0 : 1;
}
