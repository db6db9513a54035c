#include "MSPDIMigrationJob.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

#include "MSPCDigest.h"
#include "MSPCFileDescriptor.h"
#include "MSPCFileSystem.h"
#include "MSPCMove.h"
#include "MSPCOwnItems.h"
#include "MSPCPath.h"
#include "MSPDIPlanLogs.h"
#include "MSPDIReadingWithDigest.h"

namespace {

constexpr std::string_view recordName = "record";

MSPDIMigrationRecord recordOf(const MSPDIPlanToMigrate& plan, const MSPDIImportedPlan& imported) {
    MSPDIMigrationRecord record;
    record.plan = plan.path;
    record.folder = plan.folder;
    record.log = plan.log;
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

void fail(MSPDIMigrationRecord& record, const std::string& reason) {
    record.verdict = MSPDIVerdictName(MSPDIVerdict::Failed);
    record.reason = reason;
    record.document.clear();
}

std::string reasonOf(const MSPCJobEnd& end, const MSPCWorkerBounds& bounds) {
    if (end.kind == MSPCJobEnd::Kind::TookTooLong) {
        return fmt::format("it took longer than {} s, and was ended",
                           std::chrono::duration_cast<std::chrono::seconds>(bounds.time).count());
    }
    return end.kind == MSPCJobEnd::Kind::Died ? fmt::format("the process that imported it died ({})", end.reason)
                                              : "the process that imported it gave no answer";
}

// Numbers only save looking for a free one.
void keepFew(std::map<std::string, std::uint64_t>& numbers) {
    constexpr std::size_t most = 10'000;
    if (numbers.size() > most) {
        numbers.clear();
    }
}

}  // namespace

MSPDIMigrationJob::MSPDIMigrationJob(const MSPCServices& services, MSPDIPlanImportOptions options,
                                     std::string outputFolder, std::string workFolder)
    : _services(services),
      _options(std::move(options)),
      _outputFolder(std::move(outputFolder)),
      _workFolder(std::move(workFolder)) {
}

std::string MSPDIMigrationJob::folderOf(const std::string& workFolder, std::size_t worker) {
    return pathByAppendingComponent(workFolder, std::to_string(worker));
}

std::string MSPDIMigrationJob::digestOf(const std::string& path, const MSPCFileSystem& fileSystem) {
    const auto file = fileSystem.openFile(path);
    if (!file) {
        return {};
    }
    constexpr std::size_t pieceSize = 128 * 1024;
    std::string piece(std::min(pieceSize, file->expectedSize() + 1), '\0');
    MSPCSHA256 digest;
    while (true) {
        const auto count = file->read(piece.data(), piece.size());
        if (!count) {
            return {};
        }
        if (*count == 0) {
            return digest.inBase64();
        }
        digest.add(std::string_view(piece).substr(0, *count));
    }
}

// What the import has read says what was imported; where it has not read the file in one go, that is read for it, and
// counts as far as it has not changed since the import began.
std::string MSPDIMigrationJob::digestOf(const std::string& path, const MSPCFileStamp& stamp,
                                        const MSPDIReadingWithDigest& files) const {
    if (!files.digest().empty()) {
        return files.digest();
    }
    auto digest = digestOf(path, _services.fileSystem);
    return MSPCStampOf(path) == stamp ? std::move(digest) : std::string();
}

MSPDIMigrationRecord MSPDIMigrationJob::migrate(const MSPDIPlanToMigrate& plan, std::size_t worker) {
    const auto work = folderOf(_workFolder, worker);
    auto record = make(plan, work);
    if (record.isImported()) {
        publish(record, work);
    }
    endLog(record);
    return record;
}

void MSPDIMigrationJob::endLog(const MSPDIMigrationRecord& record) {
    if (!record.log.empty()) {
        MSPDIPlanLogs::addVerdict(
            record.log, record.plan,
            fmt::format("{}: {}", record.verdict, record.isImported() ? record.document : record.reason));
    }
}

MSPDIMigrationRecord MSPDIMigrationJob::make(const MSPDIPlanToMigrate& plan, const std::string& work) {
    const auto since = std::chrono::steady_clock::now();
    // Before the import, so that what changes meanwhile counts as changed.
    const auto stamp = MSPCStampOf(plan.path).value_or(MSPCFileStamp());
    MSPDIReadingWithDigest files(_services.fileSystem, plan.path);
    std::string logFailure;
    const auto log = plan.log.empty() ? nullptr : MSPDIPlanLogs::open(plan.log, plan.path, _outputFolder, logFailure);
    MSPCNoLog noLog;
    const auto imported = import(plan.path, work, files, log ? static_cast<MSPCLog&>(*log) : noLog);
    auto record = recordOf(plan, imported);
    if (log && !log->flush()) {
        logFailure = log->failure();
    }
    if (!logFailure.empty()) {
        record.warnings.push_back(fmt::format("its log {} could not be written: {}", plan.log, logFailure));
    }
    record.stamp = stamp;
    record.digest = digestOf(plan.path, stamp, files);
    const auto time = std::chrono::steady_clock::now() - since;
    record.milliseconds = static_cast<std::size_t>(std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
    return record;
}

// Bringing documents to the disk one by one takes longer than making them; the whole run does it at its end.
MSPDIImportedPlan MSPDIMigrationJob::import(const std::string& path, const std::string& work, MSPCFileSystem& files,
                                            MSPCLog& log) {
    const MSPCServices ofImport{
        _services.clock,    _services.timeZone,   log, _services.userDefaults, files, _services.randomSource,
        _services.progress, _services.seasonClock};
    auto options = _options;
    options.outputFolder = work;
    return MSPDIPlanImporter(ofImport, std::move(options), _templateDocuments).import(path);
}

// The record of the plan before, whose place it takes, is kept in the journal by now. A part of a record does no harm:
// the document is still beside it then, so that nobody reads it.
std::optional<std::string> MSPDIMigrationJob::writeRecord(const std::string& work,
                                                          const MSPDIMigrationRecord& record) const {
    const int error = MSPCWriteOwnFile(pathByAppendingComponent(work, recordName), MSPDILineOf(record, _outputFolder));
    return error == 0 ? std::nullopt : std::optional(MSPCSystemErrorText(error));
}

// The record comes before the document, and names the place that the document is to have.
void MSPDIMigrationJob::publish(MSPDIMigrationRecord& record, const std::string& work) {
    auto& fileSystem = _services.fileSystem;
    const auto bundle = pathByAppendingComponent(work, lastPathComponent(record.document));
    const auto& folder = record.folder;
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
        auto failure = isTaken ? std::nullopt : writeRecord(work, record);
        if (!failure && !isTaken) {
            failure = MSPCMoveToFreeName(bundle, record.document, isTaken);
            if (!failure) {
                if (number > 0) {
                    keepFew(_numbers);
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
                                                                const std::string& outputFolder,
                                                                const MSPCFileSystem& fileSystem) {
    const auto names = fileSystem.namesIn(folder);
    const auto isBundle = [](const std::string& name) { return name.ends_with(".kdzx"); };
    if (!names || std::ranges::any_of(*names, isBundle)) {
        return std::nullopt;
    }
    const auto line = fileSystem.readFile(pathByAppendingComponent(folder, recordName));
    auto record = line ? MSPDIRecordFrom(*line, outputFolder) : std::nullopt;
    return record && fileSystem.exists(record->document) ? std::move(record) : std::nullopt;
}

MSPDIMigrationRecord MSPDIMigrationJob::unanswered(const MSPDIPlanToMigrate& plan, const MSPCJobEnd& end,
                                                   const MSPCWorkerBounds& bounds) {
    MSPDIMigrationRecord record;
    record.plan = plan.path;
    record.stamp = MSPCStampOf(plan.path).value_or(MSPCFileStamp());
    fail(record, reasonOf(end, bounds));
    record.milliseconds = static_cast<std::size_t>(end.time.count());
    record.folder = plan.folder;
    record.log = plan.log;
    return record;
}
