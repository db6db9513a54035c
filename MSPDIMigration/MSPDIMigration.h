#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MSPCFileDescriptor.h"
#include "MSPCWorkers.h"
#include "MSPDIMachines.h"
#include "MSPDIMigrationJob.h"
#include "MSPDIMigrationJournal.h"
#include "MSPDIPlanImporter.h"
#include "MSPDIPlanLogs.h"
#include "MSPDIPlansToMigrate.h"

class MSPCRunLock;

struct MSPDIMigrationOptions {
    std::string outputFolder;                        // absolute; made where there is none
    MSPDIPlanImportOptions each;                     // of each import; its folder and its name are of no account
    bool isOnlyFailed = false;                       // only plans that were tried before, and failed
    std::size_t processes = 1;                       // that import at the same time
    MSPCWorkerBounds bounds;                         // of each plan
    std::optional<std::string> logsFolder{};         // for a log of each plan, absolute; without it there are none
    std::optional<MSPDIMachinesOptions> machines{};  // that import in the place of processes of this one
};

// How far a migration has come.
struct MSPDIMigrationProgress {
    std::size_t all = 0;     // plans of this run
    std::size_t done = 0;    // of these, the failed ones too
    std::size_t failed = 0;  // of these
};

// Imports many plans into one folder, in several processes, and goes on where an earlier run has ended, however it
// ended. What became of each plan is kept in the folder ".mspdi-migrate" in the output folder:
//
//   journal   a record of each plan that was tried, a line each; the last one of a plan counts
//   lock      locked as long as a process of a run lives, so that there is one run at a time
//   run       what is in the making; a run that begins looks through what a dead one has left there
//
// A document appears in the output folder when it is complete, under a name that was free then. A plan that was
// imported is not imported again, unless its content has changed since or its document is no longer there, with a table
// of contents that is not empty. A file counts as the same while its stamp is, and else while its size and the digest
// of its content are; one that is gone has not changed. Where one of the four is a link, nothing is done.
//
// Of each plan the memory holds a few dozen bytes; all else stays on the disk.
class MSPDIMigration {
public:
    // The services outlive the migration.
    MSPDIMigration(const MSPCServices& services, MSPDIMigrationOptions options, MSPDIPlansToMigrate plans);
    ~MSPDIMigration();
    // Whether a run has begun with an output folder, an absolute path.
    [[nodiscard]] static bool hasRunInto(const std::string& outputFolder, const MSPCFileSystem& fileSystem);
    MSPDIMigration(const MSPDIMigration&) = delete;
    MSPDIMigration& operator=(const MSPDIMigration&) = delete;

    // Takes the lock, and waits for it where another run has it, after `wait` was told who. None, or why it cannot be
    // had, in one line that names the file.
    [[nodiscard]] std::optional<std::string> takeLock(const std::function<void(const std::string& holder)>& wait);
    // Reads what earlier runs have done; with the lock what dead ones have left is cleared away, too. Without it
    // nothing is written. None, or what is wrong.
    [[nodiscard]] std::optional<std::string> readRecords();
    // How many plans are new, changed since, without the document that was made of them, failed before, and to be left
    // alone.
    struct Plans {
        std::size_t fresh = 0;
        std::size_t changed = 0;
        std::size_t withoutDocument = 0;
        std::size_t failed = 0;
        std::size_t done = 0;
        std::size_t leftOut = 0;  // that were never tried, where only failed ones are wanted
        std::size_t gone = 0;     // of those that are done: whose files are not there any more
    };
    [[nodiscard]] Plans plans();
    // How many plans of this run's list are not imported.
    [[nodiscard]] std::size_t missing() { return _found.plans.size() - plans().done; }
    // Imports what is to be imported; `tell` is called several times a second meanwhile, and at the end. None, or what
    // ended the run before its time.
    [[nodiscard]] std::optional<std::string> run(const std::function<void(const MSPDIMigrationProgress&)>& tell);
    // The record of each plan that this or an earlier run has tried: those of this run's list in its order, then others
    // in the order in which they came to their ends. One whose file is gone since it was imported says so; one whose
    // document is gone is told as failed. Whether they are there is looked at once after a run, so that all reports of
    // it say the same.
    void forEachRecord(const std::function<void(const MSPDIMigrationRecord&)>& take);
    // Whether the output folder, once it is locked, is still where it was: somebody may move or remove it meanwhile.
    // Without that no record is kept, and `run` ends.
    [[nodiscard]] bool isInPlace() const;

private:
    enum class State { Fresh, Changed, WithoutDocument, Failed, Done };
    using Tell = std::function<void(const MSPDIMigrationProgress&)>;

    [[nodiscard]] std::string ownFolder() const;
    [[nodiscard]] std::string pathOf(std::string_view name) const;  // in the own folder
    [[nodiscard]] std::optional<std::string> linkInTheWay() const;
    [[nodiscard]] std::optional<std::string> openFolders();
    [[nodiscard]] bool hasChanged(const std::string& plan, MSPDIMigrationRecord& record) const;
    [[nodiscard]] State stateOf(const std::string& plan, std::optional<MSPDIMigrationRecord>& record) const;
    [[nodiscard]] std::optional<std::string> clearAway();
    [[nodiscard]] std::optional<std::string> keep(const MSPDIMigrationRecord& record);
    [[nodiscard]] std::optional<std::string> findWanted(std::vector<bool>& wanted);
    [[nodiscard]] std::string folderFor(const std::string& plan,
                                        const std::optional<MSPDIMigrationRecord>& record) const;
    [[nodiscard]] std::optional<MSPDIPlanToMigrate> jobFor(const std::string& plan, std::string& failure);
    [[nodiscard]] MSPDIMigrationRecord recordOf(const MSPDIPlanToMigrate& plan, const MSPCJobEnd& end) const;
    void tellOfRemains(MSPDIMigrationRecord& record);
    using NextPlan = std::function<std::optional<MSPDIPlanToMigrate>()>;
    [[nodiscard]] NextPlan wantedPlans(const std::vector<bool>& wanted, std::optional<std::string>& failure);
    [[nodiscard]] std::optional<std::string> runWorkers(const std::vector<bool>& wanted, const Tell& tell);
    [[nodiscard]] std::optional<std::string> runMachines(const std::vector<bool>& wanted, const Tell& tell);
    // What is still there of an imported plan.
    struct Remains {
        bool hasPlan = false;
        bool hasDocument = false;
    };
    [[nodiscard]] Remains remainsOf(const MSPDIMigrationRecord& record, std::size_t number);
    void tellOne(MSPDIMigrationRecord record, std::size_t number,
                 const std::function<void(const MSPDIMigrationRecord&)>& take);

    const MSPCServices& _services;
    MSPDIMigrationOptions _options;
    MSPDIPlansToMigrate _found;
    std::optional<MSPDIPlanLogs> _logs;
    MSPCFileDescriptor _ownFolder;
    MSPCFileDescriptor _work;  // what is cleared away counts from it, whatever takes the place of its path
    std::unique_ptr<MSPCRunLock> _lock;
    MSPDIMigrationJournal _journal;
    std::vector<Remains> _remains;  // of the records in the order in which they are told, as far as they were
};
