#include "GrowthBench.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>
#include <vector>

namespace {

constexpr std::array<std::string_view, 11> hostileShapes = {
    "flat",           "late-nesting",         "star-links",         "one-resource",
    "one-busy-task",  "reversed-assignments", "many-custom-fields", "material-per-task",
    "duplicate-uids", "alternate-baselines",  "all-split"};

constexpr std::array<std::int64_t, 6> taskCounts = {1'000, 3'000, 10'000, 30'000, 100'000, 300'000};
constexpr std::array<std::int64_t, 4> baselineCounts = {1, 3, 6, 11};
constexpr std::int64_t tasksWithBaselines = 20'000;
constexpr double maxGrowthExponent = 1.05;

double fastestImport(const Setup& setup, const PlanOptions& options, int runs) {
    const PlanFile plan(setup, options);
    double fastest = timedImport(setup, plan.path()).seconds;
    for (int run = 1; run < runs; ++run) {
        fastest = std::min(fastest, timedImport(setup, plan.path()).seconds);
    }
    return fastest;
}

// What each size costs beyond `fixedSeconds`, and how that grows.
void measureGrowth(std::string_view name, std::span<const std::int64_t> sizes, double fixedSeconds,
                   const std::function<double(std::int64_t)>& secondsOf) {
    std::vector<double> abscissae;
    std::vector<double> ordinates;
    fmt::print("growth, {:<22}", name);
    for (const auto size : sizes) {
        const auto seconds = secondsOf(size) - fixedSeconds;
        abscissae.push_back(static_cast<double>(size));
        ordinates.push_back(std::max(seconds, 1e-6));
        fmt::print("  {}: {:.3f} s", size, seconds);
    }
    const auto exponent = growthExponent(abscissae, ordinates);
    fmt::print("  exponent {:.3f}\n", exponent);
    verdict(exponent <= maxGrowthExponent, fmt::format("growth exponent at most {}", maxGrowthExponent));
}

// Process start-up is no growth: it is taken off, measured with a plan of one task.
void measureTaskGrowth(const Setup& setup, std::string_view name, PlanOptions options) {
    options.tasks = 1;
    const auto startUp = fastestImport(setup, options, 9);
    const auto* const end = std::upper_bound(taskCounts.begin(), taskCounts.end(), setup.largestSize);
    measureGrowth(name, {taskCounts.begin(), end}, startUp, [&](std::int64_t tasks) {
        options.tasks = tasks;
        return fastestImport(setup, options, tasks <= 10'000 ? 7 : 3);
    });
}

// Nor are the actual scenario and the reading of the plan, which a plan without baselines costs as well.
void measureBaselineGrowth(const Setup& setup, std::string_view name) {
    constexpr int runs = 3;
    const auto withoutBaselines = fastestImport(setup, {.tasks = tasksWithBaselines}, runs);
    measureGrowth(name, baselineCounts, withoutBaselines, [&](std::int64_t baselines) {
        return fastestImport(setup, {.tasks = tasksWithBaselines, .baselines = baselines}, runs);
    });
}

}  // namespace

void measureAllGrowth(const Setup& setup, std::span<const Row> kinds) {
    const auto isWanted = [&setup](std::string_view name) {
        return fmt::format("growth, {}", name).starts_with(setup.only);
    };
    for (const auto& row : kinds) {
        if (isWanted(row.name)) {
            measureTaskGrowth(setup, row.name, row.options);
        }
    }
    for (const auto name : hostileShapes) {
        if (isWanted(name)) {
            measureTaskGrowth(setup, name, {.shape = *planShapeNamed(name)});
        }
    }
    if (constexpr std::string_view name = "number of baselines"; isWanted(name)) {
        measureBaselineGrowth(setup, name);
    }
}
