#include "LossesBench.h"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct LossesRow {
    std::string_view name;
    PlanOptions options;
    // What is put in the place of a text that the generated plan has; nothing where that is empty.
    std::string_view piece{};
    std::string_view other{};
    // Where every place is told there is no target: that takes time of its own for each.
    std::vector<std::string> arguments{};
};

const std::vector<LossesRow>& rows() {
    static const std::vector<LossesRow> all = {
        {"losses, 1,000 tasks", {.tasks = 1'000}},
        {"losses, 10,000 tasks", {.tasks = 10'000}},
        {"losses, 100,000 tasks", {.tasks = 100'000}},
        {"losses, 10,000 tasks, document type", {.tasks = 10'000}, "<Project ", "<!DOCTYPE Project>\n<Project "},
        {"losses, 10,000 tasks, mended", {.tasks = 10'000}, "<Name>", "<Name>Paint & "},
        {"losses, 10,000 tasks, 11 baselines", {.tasks = 10'000, .baselines = 11}},
        {"losses --all, 10,000 tasks", {.tasks = 10'000}, "", "", {"--all"}},
        {"losses --all, 100,000 tasks", {.tasks = 100'000}, "", "", {"--all"}},
        {"losses --all --json, 10,000 tasks", {.tasks = 10'000}, "", "", {"--all", "--json"}},
        {"losses --all --json, 100,000 tasks", {.tasks = 100'000}, "", "", {"--all", "--json"}},
    };
    return all;
}

void measureLosses(const Setup& setup, const LossesRow& row) {
    constexpr double mostTimes = 2.0;
    // One of a few milliseconds is soon disturbed.
    const int pairs = row.options.tasks > 1'000 ? setup.pairs : 5 * setup.pairs;
    const PlanFile plan(setup, row.options);
    if (!row.piece.empty()) {
        replaceInPlan(plan.path(), row.piece, row.other, ReplacedPieces::First);
    }
    std::vector<std::string> command = {(fs::path(setup.program).parent_path() / "mspdi").string(), "losses"};
    command.insert(command.end(), row.arguments.begin(), row.arguments.end());
    command.push_back(plan.path());
    std::vector<double> times;
    std::vector<double> memory;
    bool isTold = true;
    for (int pair = 0; pair <= pairs; ++pair) {
        const auto import = timedImport(setup, plan.path());
        const auto losses = timedRun(command);
        isTold = isTold && losses.exitStatus == 1;
        if (pair > 0) {  // the first one warms the file cache
            times.push_back(losses.seconds / import.seconds);
            memory.push_back(losses.peakMebibytes / import.peakMebibytes);
        }
    }
    fmt::print("{:<36} {:7.1f} MB: {:.2f} times the time of an import, {:.2f} times its memory\n", row.name,
               plan.megabytes(), median(times), median(memory));
    verdict(isTold, "tells losses");
    if (!row.arguments.empty()) {
        return;
    }
    verdict(median(times) <= mostTimes, fmt::format("time at most {} times an import", mostTimes));
    verdict(median(memory) <= mostTimes, fmt::format("memory at most {} times an import", mostTimes));
}

}  // namespace

void measureAllLosses(const Setup& setup) {
    for (const auto& row : rows()) {
        if (row.name.find(setup.only) != std::string_view::npos) {
            measureLosses(setup, row);
        }
    }
}
