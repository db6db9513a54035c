#pragma once

#include "MSPCProgress.h"
#include "MSPCTimeZone.h"

class MSPCClock;
class MSPCFileSystem;
class MSPCLog;
class MSPCRandomSource;
class MSPCUserDefaults;

// Everything of the outside world that the importer touches, made once by `main` (or by a test) and passed down. The
// services outlive whoever holds the references.
struct MSPCServices {
    const MSPCClock& clock;
    MSPCTimeZone timeZone;  // the machine's zone: MSPDI dates are its wall-clock times
    MSPCLog& log;
    const MSPCUserDefaults& userDefaults;
    MSPCFileSystem& fileSystem;
    MSPCRandomSource& randomSource;
    MSPCProgress& progress = MSPCNoProgress();
    // Tells which season it is: dates get the offset that is in force at this time. The clock itself, unless an import
    // in summer is to be made as one in winter.
    const MSPCClock& seasonClock = clock;
};
