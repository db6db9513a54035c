#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "MSPCJournal.h"
#include "MSPDIMigrationRecord.h"
#include "MSPDIPathIndex.h"

// The last record of each plan of a migration. The records stay in the journal on the disk; of each plan the memory
// holds only where its last one is.
class MSPDIMigrationJournal {
public:
    // Paths of records count from the output folder, which is absolute, as far as they lie below it.
    explicit MSPDIMigrationJournal(std::string outputFolder) : _outputFolder(std::move(outputFolder)) {}

    // Looks through a journal; none, or the system's description of the failure.
    [[nodiscard]] std::optional<std::string> read(std::unique_ptr<MSPCJournal> file);
    // Whether there is one.
    [[nodiscard]] bool isOpen() const { return _file != nullptr; }
    [[nodiscard]] std::optional<MSPDIMigrationRecord> recordOf(const std::string& plan);
    // Appends a record, which is the last one of its plan from now on. None, or the system's description of the
    // failure.
    [[nodiscard]] std::optional<std::string> keep(const MSPDIMigrationRecord& record);
    // The record of a plan, which the next `forEachOther` leaves out.
    [[nodiscard]] std::optional<MSPDIMigrationRecord> takeRecordOf(const std::string& plan);
    // The last records of all plans that were not taken, in the order in which they were kept.
    void forEachOther(const std::function<void(const MSPDIMigrationRecord&)>& take);

private:
    [[nodiscard]] std::optional<MSPDIMigrationRecord> recordAt(std::uint64_t number) const;

    std::string _outputFolder;
    std::unique_ptr<MSPCJournal> _file;
    MSPDIPathIndex _places;  // twice the place of each plan's last record, and one more where it was taken
};
