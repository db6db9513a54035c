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
#include "MSPDIMachines.h"
#include "MSPDIMigrationJob.h"
#include "MSPIBundleNaming.h"

namespace {

// The number of a plan in the list, as workers are told it.
std::size_t numberFrom(const std::string& job) {
    std::size_t number = 0;
    std::from_chars(job.data(), job.data() + job.size(), number);
    return number;
}

// A document whose table of contents is gone or empty, as somebody's hand or a power failure may leave it, is none.
bool isDocument(const std::string& path) {
    const auto contents = MSPCStampOf(pathByAppendingComponent(path, MSPITOCFileName));
    return contents && contents->size > 0;
}

}  // namespace

MSPDIMigration::MSPDIMigration(const MSPCServices& services, MSPDIMigrationOptions options,
                               std::vector<MSPDIPlanToMigrate> plans)
    : _services(services), _options(std::move(options)), _plans(std::move(plans)) {
}

MSPDIMigration::~MSPDIMigration() = default;

std::string MSPDIMigration::ownFolder() const {
    return pathByAppendingComponent(_options.outputFolder, ".mspdi-migrate");
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
    std::string failure;
    if (_lock) {
        _journal = MSPCJournal::open(_ownFolder.number(), "journal", failure);
        if (!_journal) {
            return path + ": " + failure;
        }
    }
    if (_services.fileSystem.exists(path)) {
        const auto text = _services.fileSystem.readFile(path, &failure);
        if (!text) {
            return path + ": " + failure;
        }
        for (std::size_t start = 0; start < text->size();) {
            const auto end = std::min(text->find('\n', start), text->size());
            auto line = text->substr(start, end - start);
            if (const auto record = MSPDIRecordFrom(line)) {
                _lines[record->plan] = std::move(line);
            }
            start = end + 1;
        }
    }
    return _lock ? clearAway() : std::nullopt;
}

// Documents of a dead run that have appeared without a record in the journal get it now; all else it has left is void.
std::optional<std::string> MSPDIMigration::clearAway() {
    const auto work = pathOf("run");
    for (const auto& name : _services.fileSystem.namesIn(work).value_or(std::vector<std::string>())) {
        const auto left = pathByAppendingComponent(work, name);
        if (const auto record = MSPDIMigrationJob::appeared(left, _services.fileSystem)) {
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

std::optional<std::string> MSPDIMigration::keep(const MSPDIMigrationRecord& record) {
    auto line = MSPDILineOf(record);
    const auto failure = _journal->append(line);
    if (failure) {
        return pathOf("journal") + ": " + *failure;
    }
    _lines[record.plan] = std::move(line);
    return std::nullopt;
}

std::optional<MSPDIMigrationRecord> MSPDIMigration::recordOf(const std::string& plan) const {
    const auto found = _lines.find(plan);
    return found == _lines.end() ? std::nullopt : MSPDIRecordFrom(found->second);
}

MSPDIMigration::State MSPDIMigration::stateOf(const MSPDIPlanToMigrate& plan) const {
    const auto record = recordOf(plan.path);
    if (!record) {
        return State::Fresh;
    }
    if (!record->isImported()) {
        return State::Failed;
    }
    const bool isSame = record->stamp == MSPCStampOf(plan.path) && isDocument(record->document);
    return isSame ? State::Done : State::Changed;
}

bool MSPDIMigration::isWanted(const MSPDIPlanToMigrate& plan) const {
    const auto state = stateOf(plan);
    return _options.isOnlyFailed ? state == State::Failed : state != State::Done;
}

MSPDIMigration::Plans MSPDIMigration::plans() const {
    Plans result;
    for (const auto& plan : _plans) {
        switch (stateOf(plan)) {
            case State::Fresh:
                ++(_options.isOnlyFailed ? result.leftOut : result.fresh);
                break;
            case State::Changed:
                ++(_options.isOnlyFailed ? result.leftOut : result.changed);
                break;
            case State::Failed:
                ++result.failed;
                break;
            case State::Done:
                ++result.done;
                break;
        }
    }
    return result;
}

std::optional<std::string> MSPDIMigration::run(const std::function<void(const MSPDIMigrationProgress&)>& tell) {
    std::vector<std::size_t> wanted;
    for (std::size_t number = 0; number < _plans.size(); ++number) {
        if (isWanted(_plans[number])) {
            wanted.push_back(number);
        }
    }
    auto failure = _options.machines && !wanted.empty() ? runMachines(wanted, tell) : runWorkers(wanted, tell);
    std::set<std::string> folders{_options.outputFolder};
    const auto ofDisk = _services.fileSystem.synchronize(folders);
    return failure || !ofDisk ? failure : "failed to bring the documents to the disk: " + *ofDisk;
}

std::optional<std::string> MSPDIMigration::runWorkers(const std::vector<std::size_t>& wanted,
                                                      const std::function<void(const MSPDIMigrationProgress&)>& tell) {
    const auto work = pathOf("run");
    MSPDIMigrationJob job(_services, _options.each, work);
    MSPCWorkers workers(std::min(_options.processes, std::max<std::size_t>(wanted.size(), 1)), _options.bounds,
                        [&](const std::string& text) {
                            const auto number = numberFrom(text);
                            return MSPDILineOf(job.migrate(_plans[number], number));
                        });
    std::optional<std::string> failure;
    MSPDIMigrationProgress progress{wanted.size(), 0, 0};
    auto next = wanted.begin();
    const auto give = [&]() -> std::optional<std::string> {
        return next == wanted.end() || failure ? std::nullopt : std::optional(std::to_string(*next++));
    };
    const auto take = [&](const std::string& text, const MSPCJobEnd& end) {
        const auto number = numberFrom(text);
        auto record = recordOf(number, end);
        tellOfRemains(record);
        const auto unkept = keep(record);
        if (unkept) {
            failure = unkept;  // what was made stays for the next run to find
            return;
        }
        MSPCRemoveItem(_work.number(), std::to_string(number).c_str());
        ++progress.done;
        progress.failed += record.isImported() ? 0U : 1U;
    };
    const auto ended = workers.run(give, take, [&] { tell(progress); });
    tell(progress);
    return failure ? failure : ended;
}

// Machines make documents; this process gives them their names, so that none appears twice, whatever lives on
// elsewhere.
std::optional<std::string> MSPDIMigration::runMachines(const std::vector<std::size_t>& wanted,
                                                       const std::function<void(const MSPDIMigrationProgress&)>& tell) {
    const auto work = pathOf("run");
    MSPDIMigrationJob job(_services, _options.each, work);
    MSPDIMachines machines(_services, *_options.machines, work, _work.number(), _lock ? _lock->number() : -1);
    MSPDIMigrationProgress progress{wanted.size(), 0, 0};
    const auto take = [&](const MSPDIMachines::Answer& answer) -> std::optional<std::string> {
        const auto& plan = _plans[answer.number];
        auto record = answer.record;
        record.plan = plan.path;
        if (record.isImported()) {
            job.publish(record, pathByAppendingComponent(work, answer.work), plan.folder);
        }
        tellOfRemains(record);
        if (auto failure = keep(record)) {
            return failure;
        }
        if (!answer.work.empty()) {
            MSPCRemoveItem(_work.number(), answer.work.c_str());
        }
        ++progress.done;
        progress.failed += record.isImported() ? 0U : 1U;
        return std::nullopt;
    };
    auto failure = machines.run(_plans, wanted, take, [&] { tell(progress); });
    tell(progress);
    return failure;
}

// What the worker has told; or, where it cannot tell any more, what the folder that it worked in says.
MSPDIMigrationRecord MSPDIMigration::recordOf(std::size_t number, const MSPCJobEnd& end) const {
    auto told = end.kind == MSPCJobEnd::Kind::Done ? MSPDIRecordFrom(end.result) : std::nullopt;
    if (!told) {
        told = MSPDIMigrationJob::appeared(MSPDIMigrationJob::folderOf(pathOf("run"), number), _services.fileSystem);
    }
    return told ? *told : MSPDIMigrationJob::unanswered(_plans[number].path, end, _options.bounds);
}

// What is left where the document of an earlier run was is nobody's to overwrite; so people have to know of it.
void MSPDIMigration::tellOfRemains(MSPDIMigrationRecord& record) const {
    const auto before = recordOf(record.plan);
    if (record.isImported() && before && before->isImported() && before->document != record.document &&
        _services.fileSystem.exists(before->document) && !isDocument(before->document)) {
        record.warnings.push_back(
            fmt::format("{} holds no table of contents any more, and was left as it is", before->document));
    }
}

void MSPDIMigration::forEachRecord(const std::function<void(const MSPDIMigrationRecord&)>& take) const {
    std::set<std::string_view> told;
    for (const auto& plan : _plans) {
        if (const auto record = recordOf(plan.path)) {
            take(*record);
            told.insert(plan.path);
        }
    }
    for (const auto& [plan, line] : _lines) {
        if (!told.contains(plan)) {
            take(*MSPDIRecordFrom(line));
        }
    }
}

std::size_t MSPDIMigration::missing() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(_plans, [this](const auto& plan) { return stateOf(plan) != State::Done; }));
}
