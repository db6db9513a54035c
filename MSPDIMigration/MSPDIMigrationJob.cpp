#include "MSPDIMigrationJob.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCMove.h"
#include "MSPCPath.h"

namespace {

constexpr std::string_view recordName = "record";

MSPDIMigrationRecord recordOf(const std::string& plan, const MSPDIImportedPlan& imported) {
    MSPDIMigrationRecord record;
    record.plan = plan;
    record.document = imported.document;
    record.verdict = MSPDIVerdictName(imported.verdict);
    record.reason = imported.reason;
    for (const auto& done : imported.mending) {
        record.mending.emplace_back(done.step, done.count);
    }
    record.tasks = imported.counts.tasks;
    record.resources = imported.counts.resources;
    record.scenarios = imported.counts.scenarios;
    record.customFields = imported.counts.customFields;
    record.warnings = imported.warnings;
    for (auto& warning : record.warnings) {
        std::ranges::replace(warning, '\n', ' ');
    }
    if (imported.account) {
        for (const auto& loss : imported.account->losses) {
            record.losses.emplace_back(loss.kind, loss.count);
        }
    }
    return record;
}

std::string reasonOf(const MSPCJobEnd& end, const MSPCWorkerBounds& bounds) {
    if (end.kind == MSPCJobEnd::Kind::TookTooLong) {
        return fmt::format("it took longer than {} s, and was ended",
                           std::chrono::duration_cast<std::chrono::seconds>(bounds.time).count());
    }
    return end.kind == MSPCJobEnd::Kind::Died ? fmt::format("the process that imported it died ({})", end.reason)
                                              : "the process that imported it gave no answer";
}

void fail(MSPDIMigrationRecord& record, const std::string& reason) {
    record.verdict = MSPDIVerdictName(MSPDIVerdict::Failed);
    record.reason = reason;
    record.document.clear();
}

}  // namespace

MSPDIMigrationJob::MSPDIMigrationJob(const MSPCServices& services, MSPDIPlanImportOptions options,
                                     std::string workFolder)
    : _services(services), _options(std::move(options)), _workFolder(std::move(workFolder)) {
}

std::string MSPDIMigrationJob::folderOf(const std::string& workFolder, std::size_t number) {
    return pathByAppendingComponent(workFolder, std::to_string(number));
}

MSPDIMigrationRecord MSPDIMigrationJob::migrate(const MSPDIPlanToMigrate& plan, std::size_t number) {
    const auto work = folderOf(_workFolder, number);
    auto record = make(plan.path, work);
    if (record.isImported()) {
        publish(record, work, plan.folder);
    }
    return record;
}

MSPDIMigrationRecord MSPDIMigrationJob::make(const std::string& plan, const std::string& work) const {
    const auto since = std::chrono::steady_clock::now();
    const auto stamp = MSPCStampOf(plan).value_or(MSPCFileStamp());
    auto options = _options;
    options.outputFolder = work;
    // Bringing documents to the disk one by one takes longer than making them; the whole run does it at its end.
    const auto imported = MSPDIPlanImporter(_services, std::move(options)).import(plan);
    auto record = recordOf(plan, imported);
    record.stamp = stamp;
    const auto time = std::chrono::steady_clock::now() - since;
    record.milliseconds = static_cast<std::size_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
    return record;
}

// The record comes before the document, and names the place that the document is to have.
void MSPDIMigrationJob::publish(MSPDIMigrationRecord& record, const std::string& work, const std::string& folder) {
    const auto bundle = pathByAppendingComponent(work, lastPathComponent(record.document));
    auto& fileSystem = _services.fileSystem;
    if (!fileSystem.isDirectory(folder)) {
        if (const auto failure = fileSystem.createFolder(folder)) {
            fail(record, fmt::format("the folder {} could not be made: {}", folder, *failure));
            return;
        }
    }
    const auto stem = pathByAppendingComponent(folder, pathByDeletingExtension(lastPathComponent(bundle)));
    const auto known = _numbers.find(stem);
    for (std::uint64_t number = known == _numbers.end() ? 0 : known->second;; ++number) {
        record.document = number == 0 ? stem + ".kdzx" : fmt::format("{}-{}.kdzx", stem, number);
        bool isTaken = fileSystem.exists(record.document);
        auto failure = isTaken ? std::nullopt
                               : fileSystem.writeAtomically(
                                     pathByAppendingComponent(work, recordName),
                                     [&record](MSPCByteWriter& writer) { writer.write(MSPDILineOf(record)); });
        if (!failure && !isTaken) {
            failure = MSPCMoveToFreeName(bundle, record.document, isTaken);
            if (!failure) {
                if (number > 0) {
                    _numbers[stem] = number + 1;
                }
                return;
            }
        }
        if (!isTaken) {
            fail(record, fmt::format("the document could not be put into {}: {}", folder, *failure));
            return;
        }
    }
}

std::optional<MSPDIMigrationRecord> MSPDIMigrationJob::appeared(const std::string& folder,
                                                                const MSPCFileSystem& fileSystem) {
    const auto names = fileSystem.namesIn(folder);
    const auto isBundle = [](const std::string& name) { return name.ends_with(".kdzx"); };
    if (!names || std::ranges::any_of(*names, isBundle)) {
        return std::nullopt;
    }
    const auto line = fileSystem.readFile(pathByAppendingComponent(folder, recordName));
    auto record = line ? MSPDIRecordFrom(*line) : std::nullopt;
    return record && fileSystem.exists(record->document) ? std::move(record) : std::nullopt;
}

MSPDIMigrationRecord MSPDIMigrationJob::unanswered(const std::string& plan, const MSPCJobEnd& end,
                                                   const MSPCWorkerBounds& bounds) {
    MSPDIMigrationRecord record;
    record.plan = plan;
    record.stamp = MSPCStampOf(plan).value_or(MSPCFileStamp());
    fail(record, reasonOf(end, bounds));
    record.milliseconds = static_cast<std::size_t>(end.time.count());
    return record;
}
