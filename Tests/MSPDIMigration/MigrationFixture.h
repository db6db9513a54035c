#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "FixedClock.h"
#include "MSPCFileSystem.h"
#include "MSPCRandomSource.h"
#include "MSPDIMigration.h"
#include "MapUserDefaults.h"
#include "RecordingLog.h"
#include "ScopedTempFolder.h"
#include "UTCInstant.h"

// Migrations of small plans into a folder.
inline std::string planNamed(const std::string& task, const std::string& more = {}) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate><Calendars>)"
           R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars><Tasks>)"
           "<Task><UID>1</UID><Name>" +
           task + "</Name><OutlineLevel>1</OutlineLevel>" + more + "</Task></Tasks></Project>";
}

inline const auto refusedPlan = planNamed("Paint", "<Type>9</Type>");

class MigrationTest : public testing::Test {
protected:
    MigrationTest() {
        std::signal(SIGPIPE, SIG_IGN);
        options.outputFolder = folder / "out";
        options.processes = 2;
        log.ignoreLines();
    }
    ~MigrationTest() override { log.ignoreLines(); }

    void addPlan(const std::string& name, const std::string& content) {
        folder.addFile("in/" + name, content);
        addPath(folder / "in/" + name);
    }
    void addPath(const std::string& path) {
        found.plans.add(path);
        plans.push_back({path, options.outputFolder});
    }
    // A run with the lock; gives "<name of the plan> <verdict> <name of the document>" of each record.
    std::vector<std::string> migrate() {
        MSPDIMigration migration(services, options, found);
        EXPECT_EQ(migration.takeLock([](const auto&) { FAIL() << "nobody has the lock"; }), std::nullopt);
        EXPECT_EQ(migration.readRecords(), std::nullopt);
        imported = 0;
        EXPECT_EQ(migration.run([this](const auto& progress) { imported = progress.done - progress.failed; }),
                  std::nullopt);
        missing = migration.missing();
        gone = migration.plans().gone;
        std::vector<std::string> told;
        documents.clear();
        logs.clear();
        warnings.clear();
        reasons.clear();
        migration.forEachRecord([&](const auto& record) {
            using Path = std::filesystem::path;
            told.push_back(Path(record.plan).filename().native() + " " + record.verdict + " " +
                           Path(record.document).filename().native());
            reasons.push_back(record.reason);
            documents.push_back(record.document);
            logs.push_back(record.log);
            warnings.insert(warnings.end(), record.warnings.begin(), record.warnings.end());
        });
        return told;
    }

    ScopedTempFolder folder;
    FixedClock clock{utcInstant(2012, 1, 9, 8)};
    RecordingLog log;
    MapUserDefaults settings;
    MSPCDiskFileSystem files;
    MSPCCryptoRandomSource randomSource;
    MSPCServices services{clock, MSPCTimeZone::fixed(0), log, settings, files, randomSource};
    MSPDIMigrationOptions options;
    MSPDIPlansToMigrate found;
    std::vector<MSPDIPlanToMigrate> plans;  // the same
    std::vector<std::string> documents;
    std::vector<std::string> logs;
    std::vector<std::string> reasons;
    std::vector<std::string> warnings;
    std::size_t imported = 0;
    std::size_t missing = 0;
    std::size_t gone = 0;
};
