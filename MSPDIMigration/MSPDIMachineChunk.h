#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCTimeZone.h"
#include "MSPCWorkers.h"
#include "MSPDIMigrationJob.h"
#include "MSPDIPlanImporter.h"

// What each import of a migration may take, as people give it.
struct MSPDIMigrationBounds {
    std::size_t processes = 0;  // that import at the same time; 0 for one for each processor of the machine
    std::size_t seconds = 0;    // for each plan; 0 for any number
    std::size_t bytes = 0;      // for each plan; 0 for the process's share of four fifths of the machine's memory

    // What that means on this machine.
    [[nodiscard]] std::size_t processesHere() const;
    [[nodiscard]] MSPCWorkerBounds boundsHere() const;
};

// Plans that one machine is to import, and how. It travels as a file that both machines see.
struct MSPDIMachineChunk {
    struct Plan {
        std::size_t number = 0;  // whoever hands it out knows it by that
        MSPDIPlanToMigrate plan;
    };

    std::string version;          // of the program that hands it out
    std::string zone;             // its time zone, as MSPDIOffsetsOf tells it
    std::string outputFolder;     // absolute; paths of records count from it
    MSPDIPlanImportOptions each;  // without a template: the one that is installed where the plans are imported
    bool isAsInWinter = false;    // dates get the offset of an import in winter
    MSPDIMigrationBounds bounds;
    std::vector<Plan> plans;
};

// The chunk as a text, and back again; none where the text is none, or was cut off. Of the options for imports only
// template, losses and mending travel.
[[nodiscard]] std::string MSPDITextOf(const MSPDIMachineChunk& chunk);
[[nodiscard]] std::optional<MSPDIMachineChunk> MSPDIChunkFrom(std::string_view text);

// The version of a text that may be of another one, which has it at the same place.
[[nodiscard]] std::string MSPDIVersionOfChunk(std::string_view text);

// The offsets of a time zone in the winters and summers from 1980 to 2049: zones in which they are the same make the
// same documents, whatever they are called.
[[nodiscard]] std::string MSPDIOffsetsOf(const MSPCTimeZone& timeZone);
