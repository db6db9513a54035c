#include "MendBench.h"

#include <fmt/format.h>

#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct MendRow {
    std::string_view name;
    // What is put in the place of a text that the generated plan has; nothing where that is empty.
    std::string_view piece{};
    std::string_view other{};
    ReplacedPieces pieces = ReplacedPieces::First;
    std::vector<std::string> arguments{};
};

const std::vector<MendRow>& rows() {
    static const std::vector<MendRow> all = {
        {"mend, root task", "<Summary>1</Summary><Milestone>0</Milestone></Task>",
         "<Summary>0</Summary><Milestone>0</Milestone></Task>"},
        {"mend, one bad value", "<Duration>PT16H0M0S</Duration>", "<Duration>soon</Duration>"},
        {"mend, a bad value in every task", "<Duration>PT", "<Duration>soon", ReplacedPieces::All},
        {"mend, no calendar named Standard", "<UID>1</UID><Name>Standard</Name>", "<UID>0</UID><Name>Usual</Name>"},
        {"mend, levels below 0", "<OutlineLevel>2<", "<OutlineLevel>-2<", ReplacedPieces::All},
        {"mend, tasks without a UID", "<Task>\n\t\t\t<UID>", "<Task>\n\t\t\t<ID>0</ID><UID>-", ReplacedPieces::All},
        {"mend, another namespace", "schemas.microsoft.com/project", "schemas.microsoft.com/project/2003"},
        {"mend, inside a text file", "<?xml version", "Hello,\n\n<?xml version"},
        {"mend --all", "", "", ReplacedPieces::First, {"--all"}},
    };
    return all;
}

void measureMend(const Setup& setup, const MendRow& row) {
    constexpr double mostTimes = 3.0;
    const PlanFile plan(setup, {.tasks = 20'000});
    if (!row.piece.empty()) {
        replaceInPlan(plan.path(), row.piece, row.other, row.pieces);
    }
    const auto copy = (setup.scratch / "mended.xml").string();
    std::vector<std::string> command = {(fs::path(setup.program).parent_path() / "mspdi").string(), "mend", plan.path(),
                                        "-o", copy};
    command.insert(command.end(), row.arguments.begin(), row.arguments.end());
    std::vector<double> times;
    std::vector<double> memory;
    bool isMended = true;
    for (int pair = 0; pair <= setup.pairs; ++pair) {
        fs::remove(copy);
        const auto mend = timedRun(command);
        isMended = isMended && mend.exitStatus == 0 && fs::exists(copy);
        const auto import = timedImport(setup, copy);
        if (pair > 0) {  // the first one warms the file cache
            times.push_back(mend.seconds / import.seconds);
            memory.push_back(mend.peakMebibytes / import.peakMebibytes);
        }
    }
    fs::remove(copy);
    fmt::print("{:<36} {:7.1f} MB: {:.2f} times the time of an import, {:.2f} times its memory\n", row.name,
               plan.megabytes(), median(times), median(memory));
    verdict(isMended, "mends the plan");
    verdict(median(times) <= mostTimes, fmt::format("time at most {} times an import", mostTimes));
}

}  // namespace

void measureAllMends(const Setup& setup) {
    for (const auto& row : rows()) {
        if (row.name.find(setup.only) != std::string_view::npos) {
            measureMend(setup, row);
        }
    }
}
