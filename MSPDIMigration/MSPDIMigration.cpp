#include "MSPDIMigration.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <set>
#include <utility>

#include "MSPCFileSystem.h"
#include "MSPCJournal.h"
#include "MSPCOwnItems.h"
#include "MSPCPath.h"
#include "MSPCRemoval.h"
#include "MSPCRunLock.h"
#include "MSPIBundleNaming.h"

namespace {

// A plan as workers are told it: the texts behind their sizes, so that any text will do.
std::string textOf(const MSPDIPlanToMigrate& plan) {
    return fmt::format("{} {} {}{}{}", plan.path.size(), plan.folder.size(), plan.path, plan.folder, plan.log);
}

std::size_t takeNumber(std::string_view& text) {
    std::size_t number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()) + 1);
    return number;
}

MSPDIPlanToMigrate planFrom(std::string_view text) {
    const auto path = takeNumber(text);
    const auto folder = takeNumber(text);
    return {std::string(text.substr(0, path)), std::string(text.substr(path, folder)),
            std::string(text.substr(path + folder))};
}

std::string ownFolderIn(const std::string& outputFolder) {
    return pathByAppendingComponent(outputFolder, ".mspdi-migrate");
}

// A document whose table of contents is gone or empty, as somebody's hand or a power failure may leave it, is none.
bool isDocument(const std::string& path) {
    const auto contents = MSPCStampOf(pathByAppendingComponent(path, MSPITOCFileName));
    return contents && contents->size > 0;
}

}  // namespace

MSPDIMigration::MSPDIMigration(const MSPCServices& services, MSPDIMigrationOptions options, MSPDIPlansToMigrate plans)
    : _services(services), _options(std::move(options)), _found(std::move(plans)), _journal(_options.outputFolder) {
    if (_options.logsFolder) {
        _logs.emplace(*_options.logsFolder, _options.outputFolder, _services.fileSystem);
    }
}

MSPDIMigration::~MSPDIMigration() = default;

bool MSPDIMigration::hasRunInto(const std::string& outputFolder, const MSPCFileSystem& fileSystem) {
    return fileSystem.exists(ownFolderIn(outputFolder));
}

std::string MSPDIMigration::ownFolder() const {
    return ownFolderIn(_options.outputFolder);
}

std::string MSPDIMigration::pathOf(std::string_view name) const {
    return pathByAppendingComponent(ownFolder(), name);
}

// Where a link leads is somebody else's: what is there must not be written, and above all not cleared away.
std::optional<std::string> MSPDIMigration::linkInTheWay() const {
    for (const auto& path : {ownFolder(), pathOf("lock"), pathOf("journal"), pathOf("run")}) {
        if (MSPCIsLink(path)) {
            return path + ": it is a link, which no migration follows";
        }
    }
    return std::nullopt;
}

std::optional<std::string> MSPDIMigration::openFolders() {
    if (const auto failure = _services.fileSystem.createFolder(_options.outputFolder)) {
        return _options.outputFolder + ": " + *failure;
    }
    if (auto link = linkInTheWay()) {
        return link;
    }
    if (const int error = MSPCOpenOwnFolder(ownFolder(), _ownFolder); error != 0) {
        return ownFolder() + ": " + MSPCSystemErrorText(error);
    }
    const int error = MSPCOpenOwnFolder(_ownFolder.number(), "run", _work);
    return error == 0 ? std::nullopt : std::optional(pathOf("run") + ": " + MSPCSystemErrorText(error));
}

std::optional<std::string> MSPDIMigration::takeLock(const std::function<void(const std::string& holder)>& wait) {
    if (auto failure = openFolders()) {
        return failure;
    }
    _lock = std::make_unique<MSPCRunLock>(_ownFolder.number(), "lock");
    if (_lock->failure()) {
        return pathOf("lock") + ": " + *_lock->failure();
    }
    if (!_lock->tryToTake()) {
        wait(_lock->holder());
        if (!_lock->waitAndTake()) {
            return pathOf("lock") + ": it cannot be locked";
        }
    }
    _lock->sign();
    return std::nullopt;
}

std::optional<std::string> MSPDIMigration::readRecords() {
    if (auto link = linkInTheWay()) {
        return link;
    }
    const auto path = pathOf("journal");
    if (!_lock && !_services.fileSystem.exists(path)) {
        return std::nullopt;
    }
    std::string failure;
    auto file =
        _lock ? MSPCJournal::open(_ownFolder.number(), "journal", failure) : MSPCJournal::openToRead(path, failure);
    if (!file) {
        return path + ": " + failure;
    }
    if (const auto reason = _journal.read(std::move(file))) {
        return path + ": " + *reason;
    }
    return _lock ? clearAway() : std::nullopt;
}

// Documents of a dead run that have appeared without a record in the journal get it now; all else it has left is void.
std::optional<std::string> MSPDIMigration::clearAway() {
    const auto work = pathOf("run");
    for (const auto& name : _services.fileSystem.namesIn(work).value_or(std::vector<std::string>())) {
        const auto left = pathByAppendingComponent(work, name);
        if (const auto record = MSPDIMigrationJob::appeared(left, _options.outputFolder, _services.fileSystem)) {
            if (auto failure = keep(*record)) {
                return failure;
            }
        }
        if (!MSPCRemoveItem(_work.number(), name.c_str())) {
            return left + ": it cannot be removed";
        }
    }
    return std::nullopt;
}

bool MSPDIMigration::isInPlace() const {
    return MSPCIsFolderAt(ownFolder(), _ownFolder);
}

std::optional<std::string> MSPDIMigration::keep(const MSPDIMigrationRecord& record) {
    if (!isInPlace()) {
        return ownFolder() + ": it was moved or removed while this ran";
    }
    _remains.clear();
    const auto failure = _journal.keep(record);
    return failure ? std::optional(pathOf("journal") + ": " + *failure) : std::nullopt;
}

// Where only the times of a file are others, the record gets them, so that its content need not be read once more.
bool MSPDIMigration::hasChanged(const std::string& plan, MSPDIMigrationRecord& record) const {
    const auto stamp = MSPCStampOf(plan);
    if (!stamp || *stamp == record.stamp) {
        return false;
    }
    if (stamp->size != record.stamp.size) {
        return true;
    }
    // The first records have neither the time that the system sets nor a digest.
    const bool isOfSameTime = record.stamp.systemNanoseconds == 0 && stamp->nanoseconds == record.stamp.nanoseconds;
    if (!isOfSameTime &&
        (record.digest.empty() || MSPDIMigrationJob::digestOf(plan, _services.fileSystem) != record.digest)) {
        return true;
    }
    record.stamp = *stamp;
    if (record.digest.empty()) {
        record.digest = MSPDIMigrationJob::digestOf(plan, _services.fileSystem);
    }
    return false;
}

MSPDIMigration::State MSPDIMigration::stateOf(const std::string& plan,
                                              std::optional<MSPDIMigrationRecord>& record) const {
    if (!record) {
        return State::Fresh;
    }
    if (!record->isImported()) {
        return State::Failed;
    }
    if (!isDocument(record->document)) {
        return State::WithoutDocument;
    }
    return hasChanged(plan, *record) ? State::Changed : State::Done;
}

MSPDIMigration::Plans MSPDIMigration::plans() {
    Plans result;
    MSPDIPlanPaths::Walk walk(_found.plans);
    while (const auto* const plan = walk.next()) {
        auto record = _journal.recordOf(*plan);
        switch (stateOf(*plan, record)) {
            case State::Fresh:
                ++(_options.isOnlyFailed ? result.leftOut : result.fresh);
                break;
            case State::Changed:
                ++(_options.isOnlyFailed ? result.leftOut : result.changed);
                break;
            case State::WithoutDocument:
                ++(_options.isOnlyFailed ? result.leftOut : result.withoutDocument);
                break;
            case State::Failed:
                ++result.failed;
                break;
            case State::Done:
                ++result.done;
                result.gone += MSPCStampOf(*plan) ? 0U : 1U;
                break;
        }
    }
    return result;
}

// Which plans of the list are to be imported, in its order.
std::optional<std::string> MSPDIMigration::findWanted(std::vector<bool>& wanted) {
    wanted.reserve(_found.plans.size());
    MSPDIPlanPaths::Walk walk(_found.plans);
    while (const auto* const plan = walk.next()) {
        auto record = _journal.recordOf(*plan);
        const auto stamp = record ? record->stamp : MSPCFileStamp();
        const auto state = stateOf(*plan, record);
        wanted.push_back(_options.isOnlyFailed ? state == State::Failed : state != State::Done);
        if (state == State::Done && record->stamp != stamp) {
            if (auto failure = keep(*record)) {
                return failure;
            }
        }
    }
    return std::nullopt;
}

std::optional<std::string> MSPDIMigration::run(const Tell& tell) {
    std::vector<bool> wanted;
    auto failure = findWanted(wanted);
    if (!failure) {
        failure = _options.machines ? runMachines(wanted, tell) : runWorkers(wanted, tell);
    }
    std::set<std::string> folders{_options.outputFolder};
    const auto ofDisk = _services.fileSystem.synchronize(folders);
    return failure || !ofDisk ? failure : "failed to bring the documents to the disk: " + *ofDisk;
}

// Where the document of a plan is to be: what failed before goes where it was to go then. A run through a folder says
// itself where all is to go.
std::string MSPDIMigration::folderFor(const std::string& plan,
                                      const std::optional<MSPDIMigrationRecord>& record) const {
    const bool isAsBefore = _found.isList || _options.isOnlyFailed;
    if (isAsBefore && record && !record->folder.empty()) {
        return record->folder;
    }
    const auto folder = pathByDeletingLastComponent(plan);
    const auto& root = _found.treeRoot;
    const bool isInTree = !root.empty() && folder.starts_with(root == "/" ? root : root + "/") && folder != root;
    return isInTree ? pathByAppendingComponent(_options.outputFolder, folder.substr(root == "/" ? 1 : root.size() + 1))
                    : _options.outputFolder;
}

// What a worker is told of a plan; none where its log cannot be made.
std::optional<MSPDIPlanToMigrate> MSPDIMigration::jobFor(const std::string& plan, std::string& failure) {
    const auto record = _journal.recordOf(plan);
    MSPDIPlanToMigrate job{plan, folderFor(plan, record), {}};
    if (_logs) {
        job.log = _logs->logOf(plan, job.folder, record ? record->log : "", failure);
        if (job.log.empty()) {
            return std::nullopt;
        }
    }
    return job;
}

// Gives one wanted plan after another; none behind the last one, and where something has failed.
MSPDIMigration::NextPlan MSPDIMigration::wantedPlans(const std::vector<bool>& wanted,
                                                     std::optional<std::string>& failure) {
    return [this, &wanted, &failure, walk = MSPDIPlanPaths::Walk(_found.plans),
            isWanted = wanted.begin()]() mutable -> std::optional<MSPDIPlanToMigrate> {
        while (!failure && isWanted != wanted.end()) {
            const auto* const plan = walk.next();
            if (*isWanted++) {
                std::string reason;
                auto told = jobFor(*plan, reason);
                failure = told ? std::nullopt : std::optional(reason);
                return told;
            }
        }
        return std::nullopt;
    };
}

std::optional<std::string> MSPDIMigration::runWorkers(const std::vector<bool>& wanted, const Tell& tell) {
    MSPDIMigrationProgress progress{static_cast<std::size_t>(std::ranges::count(wanted, true)), 0, 0};
    const auto processes = std::min(_options.processes, std::max<std::size_t>(progress.all, 1));
    MSPDIMigrationJob job(_services, _options.each, _options.outputFolder, pathOf("run"));
    MSPCWorkers workers(processes, _options.bounds, [&](const std::string& text, std::size_t worker) {
        return MSPDILineOf(job.migrate(planFrom(text), worker), _options.outputFolder);
    });
    std::optional<std::string> failure;
    const auto next = wantedPlans(wanted, failure);
    const auto give = [&next] {
        const auto plan = next();
        return plan ? std::optional(textOf(*plan)) : std::nullopt;
    };
    const auto take = [&](const std::string& text, const MSPCJobEnd& end) {
        auto record = recordOf(planFrom(text), end);
        tellOfRemains(record);
        if (auto unkept = keep(record)) {
            failure = std::move(unkept);  // what was made stays for the next run to find
            return;
        }
        if (!record.isImported() && !failure) {
            MSPCRemoveItem(_work.number(), std::to_string(end.worker).c_str());  // whatever it has left there
        }
        ++progress.done;
        progress.failed += record.isImported() ? 0U : 1U;
    };
    const auto ended = workers.run(give, take, [&] { tell(progress); });
    tell(progress);
    for (std::size_t worker = 0; worker < processes && !failure; ++worker) {
        MSPCRemoveItem(_work.number(), std::to_string(worker).c_str());
    }
    return failure ? failure : ended;
}

// Machines make documents; this process gives them their names, so that none appears twice, whatever lives on
// elsewhere.
std::optional<std::string> MSPDIMigration::runMachines(const std::vector<bool>& wanted, const Tell& tell) {
    MSPDIMigrationProgress progress{static_cast<std::size_t>(std::ranges::count(wanted, true)), 0, 0};
    const auto work = pathOf("run");
    MSPDIMigrationJob job(_services, _options.each, _options.outputFolder, work);
    MSPDIMachines machines(_services, *_options.machines, _options.outputFolder,
                           {work, _work.number(), _lock ? _lock->number() : -1});
    const auto take = [&](MSPDIMigrationRecord record, const std::string& folder) -> std::optional<std::string> {
        if (record.isImported()) {
            job.publish(record, pathByAppendingComponent(work, folder));
        }
        MSPDIMigrationJob::endLog(record);
        tellOfRemains(record);
        if (auto failure = keep(record)) {
            return failure;  // what was made stays for the next run to find
        }
        MSPCRemoveItem(_work.number(), folder.c_str());
        ++progress.done;
        progress.failed += record.isImported() ? 0U : 1U;
        return std::nullopt;
    };
    std::optional<std::string> failure;
    const auto ended = machines.run(progress.all, wantedPlans(wanted, failure), take, [&] { tell(progress); });
    tell(progress);
    return failure ? failure : ended;
}

// What the worker has told; or, where it cannot tell any more, what the folder that it worked in says.
MSPDIMigrationRecord MSPDIMigration::recordOf(const MSPDIPlanToMigrate& plan, const MSPCJobEnd& end) const {
    auto told = end.kind == MSPCJobEnd::Kind::Done ? MSPDIRecordFrom(end.result, _options.outputFolder) : std::nullopt;
    if (!told) {
        told = MSPDIMigrationJob::appeared(MSPDIMigrationJob::folderOf(pathOf("run"), end.worker),
                                           _options.outputFolder, _services.fileSystem);
    }
    if (told && told->plan == plan.path) {  // that of the plan before may be there still
        return *told;
    }
    auto record = MSPDIMigrationJob::unanswered(plan, end, _options.bounds);
    MSPDIMigrationJob::endLog(record);
    return record;
}

// What is left where the document of an earlier run was is nobody's to overwrite; so people have to know of it.
void MSPDIMigration::tellOfRemains(MSPDIMigrationRecord& record) {
    const auto before = _journal.recordOf(record.plan);
    if (record.isImported() && before && before->isImported() && before->document != record.document &&
        _services.fileSystem.exists(before->document) && !isDocument(before->document)) {
        record.warnings.push_back(fmt::format("{} holds no table of contents any more, and was left as it is",
                                              MSPDIPathInFolder(before->document, _options.outputFolder)));
    }
}

MSPDIMigration::Remains MSPDIMigration::remainsOf(const MSPDIMigrationRecord& record, std::size_t number) {
    if (number == _remains.size()) {
        _remains.push_back(record.isImported()
                               ? Remains{MSPCStampOf(record.plan).has_value(), isDocument(record.document)}
                               : Remains());
    }
    return _remains[number];
}

void MSPDIMigration::tellOne(MSPDIMigrationRecord record, std::size_t number,
                             const std::function<void(const MSPDIMigrationRecord&)>& take) {
    const auto remains = remainsOf(record, number);
    if (record.isImported() && !remains.hasDocument) {
        record.verdict = "failed";
        record.reason = remains.hasPlan ? "its document is gone" : "the plan is gone, and so is its document";
        record.document.clear();
    } else if (record.isImported() && !remains.hasPlan) {
        record.warnings.emplace_back("the plan is gone since it was imported");
    }
    take(record);
}

void MSPDIMigration::forEachRecord(const std::function<void(const MSPDIMigrationRecord&)>& take) {
    std::size_t number = 0;
    MSPDIPlanPaths::Walk walk(_found.plans);
    while (const auto* const plan = walk.next()) {
        if (auto record = _journal.takeRecordOf(*plan)) {
            tellOne(std::move(*record), number++, take);
        }
    }
    _journal.forEachOther([&](const MSPDIMigrationRecord& record) { tellOne(record, number++, take); });
}
