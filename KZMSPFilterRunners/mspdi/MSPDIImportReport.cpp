#include "MSPDIImportReport.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "MSPCCharacters.h"
#include "MSPCMessage.h"
#include "MSPCPath.h"
#include "MSPDIJSON.h"
#include "MSPDIKinds.h"
#include "MSPDIMendReport.h"

namespace {

using JSON = nlohmann::ordered_json;

constexpr std::string_view summerTime = "summer-time";
constexpr std::string_view noLoss = "nothing";

std::string counted(std::size_t count, std::string_view one) {
    return fmt::format("{} {}{}", count, one, count == 1 ? "" : "s");
}

std::size_t summerDatesOf(const MSPDIAccount& account) {
    const auto found = std::ranges::find(account.losses, summerTime, &MSPDILoss::kind);
    return found == account.losses.end() ? 0 : found->count;
}

// The first kinds that matter, and how many there are beside.
std::string lossesInOneLine(const MSPDIAccount& account) {
    constexpr std::size_t most = 5;
    std::size_t more = 0;
    std::size_t ofFile = 0;
    std::string text;
    std::size_t told = 0;
    for (const auto& loss : account.losses) {
        if (loss.kind == summerTime) {
            continue;
        }
        if (!MSPDIMatters(loss.kind)) {
            ++ofFile;
        } else if (told++ < most) {
            text += fmt::format("{}{} x {}", text.empty() ? "" : ", ", loss.count, loss.kind);
        } else {
            ++more;
        }
    }
    if (text.empty()) {
        return std::string(ofFile == 0 ? noLoss : "only what belongs to the file, not to the plan");
    }
    return more == 0 ? text : text + fmt::format(" and {}", counted(more, "more kind"));
}

JSON jsonOf(const MSPDIAccount& account) {
    auto losses = JSON::array();
    for (const auto& loss : account.losses) {
        losses.push_back({{"kind", loss.kind}, {"count", loss.count}, {"what", loss.what}});
    }
    return losses;
}

JSON jsonOf(const std::vector<MSPDIMendDone>& mending) {
    auto steps = JSON::array();
    for (const auto& done : mending) {
        const auto* step = MSPDIMendStepNamed(done.step);
        steps.push_back({{"step", done.step}, {"count", done.count}, {"what", step->what}, {"price", step->price}});
    }
    return steps.empty() ? JSON(nullptr) : steps;
}

// "2 x uid, 1 x root-task".
std::string inOneLine(const std::vector<MSPDIMendDone>& mending) {
    std::string text;
    for (const auto& done : mending) {
        text += fmt::format("{}{} x {}", text.empty() ? "" : ", ", done.count, done.step);
    }
    return text;
}

// The losses are those of the plan as it was imported, so of a mended one there has to be a copy to look at.
std::string commandForLosses(const std::string& plan, const std::vector<MSPDIMendDone>& mending) {
    if (mending.empty()) {
        return "mspdi losses " + MSPDIShellWord(plan);
    }
    const bool isNecessary =
        std::ranges::all_of(mending, [](const auto& done) { return MSPDIMendStepNamed(done.step)->isNecessary; });
    const auto copy = MSPDIShellWord(MSPDIMendedName(plan, 0));
    return fmt::format("mspdi mend {}{} -o {} && mspdi losses {}", isNecessary ? "" : "--all ", MSPDIShellWord(plan),
                       copy, copy);
}

JSON jsonOf(const std::string& plan, const MSPDIImportedPlan& imported) {
    const bool isImported = imported.verdict == MSPDIVerdict::Imported;
    const auto number = [isImported](std::size_t count) { return isImported ? JSON(count) : JSON(nullptr); };
    return {{"plan", plan},
            {"verdict", MSPDIVerdictName(imported.verdict)},
            {"reason", isImported ? JSON(nullptr) : JSON(imported.reason)},
            {"document", isImported ? JSON(imported.document) : JSON(nullptr)},
            {"tasks", number(imported.counts.tasks)},
            {"resources", number(imported.counts.resources)},
            {"scenarios", number(imported.counts.scenarios)},
            {"customFields", number(imported.counts.customFields)},
            {"warnings", imported.warnings},
            {"losses", imported.account ? jsonOf(*imported.account) : JSON(nullptr)},
            {"summerDates", imported.account ? JSON(summerDatesOf(*imported.account)) : JSON(nullptr)},
            {"mending", jsonOf(imported.mending)},
            {"mendingObstacle", imported.mendingObstacle.empty() ? JSON(nullptr) : JSON(imported.mendingObstacle)}};
}

// A character as it stands between $' and '. What a terminal must not get is written in octal: behind \x some shells
// would read on.
std::string quotedWithEscapes(std::string_view character) {
    if (MSPCShownText(character).view() == character) {
        return fmt::format("{}{}", character == "'" || character == "\\" ? "\\" : "", character);
    }
    std::string escapes;
    for (const char byte : character) {
        escapes += fmt::format("\\{:03o}", static_cast<unsigned char>(byte));
    }
    return escapes;
}

std::string inQuotesWithEscapes(std::string_view text) {
    std::string quoted = "$'";
    while (!text.empty()) {
        const auto length = std::max<std::size_t>(MSPCLengthOfCharacter(text), 1);
        quoted += quotedWithEscapes(text.substr(0, length));
        text.remove_prefix(length);
    }
    quoted += '\'';
    return quoted;
}

}  // namespace

struct MSPDIImportReport::Told {
    JSON plans = JSON::array();
    std::size_t importedCount = 0;
};

MSPDIImportReport::MSPDIImportReport(std::optional<std::string> outputFolder, MSPDIRun& run)
    : _outputFolder(std::move(outputFolder)), _run(run), _told(std::make_unique<Told>()) {
}

MSPDIImportReport::~MSPDIImportReport() = default;

void MSPDIImportReport::tell(const std::string& plan, const MSPDIImportedPlan& imported) {
    const bool isImported = imported.verdict == MSPDIVerdict::Imported;
    _told->importedCount += isImported ? 1 : 0;
    if (_run.isQuiet) {
        return;
    }
    if (_run.isJSON) {
        _told->plans.push_back(jsonOf(plan, imported));
    } else if (isImported) {
        tellImported(plan, imported);
    } else if (imported.verdict == MSPDIVerdict::Refused) {
        tellRefused(plan, imported);
    }
    _run.out.flush();
}

// As people have named the folder, so that they can type it again.
std::string MSPDIImportReport::shownDocument(const std::string& plan, const MSPDIImportedPlan& imported) const {
    const auto folder = _outputFolder ? *_outputFolder : pathByDeletingLastComponent(plan);
    return pathByAppendingComponent(folder, lastPathComponent(imported.document));
}

void MSPDIImportReport::tellImported(const std::string& plan, const MSPDIImportedPlan& imported) {
    auto& out = _run.out;
    const auto& counts = imported.counts;
    out << MSPCShownText(plan).view() << ": the document is "
        << _run.emphasized(MSPCShownText(shownDocument(plan, imported)).view())
        << (imported.isNumbered ? " (its own name was taken)" : "") << '\n';
    out << fmt::format("    {}, {}, {}, {}\n", counted(counts.tasks, "task"), counted(counts.resources, "resource"),
                       counted(counts.scenarios, "scenario"), counted(counts.customFields, "custom field"));
    for (const auto& done : imported.mending) {
        out << fmt::format("    Mended: {} x {}: {}\n", done.count, done.step, MSPDIMendStepNamed(done.step)->what);
    }
    tellWarnings(imported);
    if (!imported.account) {
        return;
    }
    tellSummerDates(*imported.account);
    const auto losses = lossesInOneLine(*imported.account);
    out << "    Lost or changed: " << losses;
    if (imported.isCutOff) {
        out << ", and what is cut off";  // of which nothing more can be told
    } else if (losses != noLoss) {
        out << "; all of it: " << commandForLosses(plan, imported.mending);
    }
    out << '\n';
}

void MSPDIImportReport::tellRefused(const std::string& plan, const MSPDIImportedPlan& imported) {
    _run.out << MSPCShownText(plan).view() << ": " << _run.emphasized("refused") << ": "
             << MSPCShownText(imported.reason).view() << '\n';
    tellWarnings(imported);
    if (!imported.mending.empty()) {
        _run.out << "    mspdi import --mend imports it: " << inOneLine(imported.mending) << " (mspdi mend --dry-run "
                 << MSPDIShellWord(plan) << " tells more)\n";
    } else if (!imported.mendingObstacle.empty()) {
        _run.out << "    Mending does not help: " << MSPCShownText(imported.mendingObstacle).view() << '\n';
    }
}

void MSPDIImportReport::tellWarnings(const MSPDIImportedPlan& imported) {
    for (const auto& warning : imported.warnings) {
        _run.out << "    Warning: " << MSPCShownText(warning).view() << '\n';
    }
}

void MSPDIImportReport::tellSummerDates(const MSPDIAccount& account) {
    if (const auto count = summerDatesOf(account); count > 0) {
        _run.out << fmt::format(
            "    Daylight saving time: {} it once more than in winter (--as-in-winter imports as in winter)\n",
            count == 1 ? "1 date gets" : fmt::format("{} dates get", count));
    }
}

void MSPDIImportReport::finish() {
    if (_run.isQuiet || !_run.isJSON) {
        return;
    }
    const JSON json = {{"imported", _told->importedCount}, {"plans", std::move(_told->plans)}};
    MSPDIWriteJSON(json, _run.out);
}

std::string MSPDIShellWord(const std::string& text) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_./-+,:@%=";
    // What begins with a dash would be taken for an option.
    auto word = text.starts_with('-') ? "./" + text : text;
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
        return word;
    }
    if (MSPCShownText(word).view() != word) {
        return inQuotesWithEscapes(word);
    }
    std::string quoted = "'";
    for (const char character : word) {
        quoted += character == '\'' ? std::string("'\\''") : std::string(1, character);
    }
    return quoted + "'";
}
