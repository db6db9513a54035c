#pragma once

#include "FixedClock.h"
#include "InMemoryFileSystem.h"
#include "MSPCRandomSource.h"
#include "MSPCServices.h"
#include "MapUserDefaults.h"
#include "RecordingLog.h"
#include "UTCInstant.h"

// An outside world for what works on whole plans: Monday, 9 January 2012, 8 o'clock in UTC, and files in memory.
struct ServicesInMemory {
    FixedClock clock{utcInstant(2012, 1, 9, 8)};
    RecordingLog log;
    MapUserDefaults settings;
    InMemoryFileSystem machine;
    MSPCCryptoRandomSource randomSource;
    MSPCServices services{clock, MSPCTimeZone::fixed(0), log, settings, machine, randomSource};
};
