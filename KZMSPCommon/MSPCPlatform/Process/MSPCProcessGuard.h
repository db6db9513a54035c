#pragma once

#include <string_view>

class MSPCStandardErrorLog;

// Makes the process end decently while this object lives; there is one at a time, and it borrows the log.
// - SIGHUP, SIGINT and SIGTERM end the process with the log written out, temporary files and folders removed, and exit
//   status 128 + signal number. One that was ignored at the start (nohup) stays ignored.
// - A fatal signal (a crash, or the abort after a foreign exception) writes out the log and then takes its normal
//   course.
// - SIGPIPE and SIGXFSZ are ignored, so that a closed pipe and a file-size limit are ordinary write failures.
// - Standard descriptors that are closed are opened on nothing: otherwise a plan file could get the number of standard
//   error and be filled with log lines.
class MSPCProcessGuard {
public:
    explicit MSPCProcessGuard(MSPCStandardErrorLog& log);
    ~MSPCProcessGuard();
    // From now on an exception that nobody catches for want of memory, or that there is no memory to throw, ends the
    // process with the log written out, these lines on standard error and this exit status. Others end it as ever. The
    // lines are kept for as long as the process lives.
    static void endAtLackOfMemory(std::string_view lines = "Exception: std::bad_alloc\nNot enough memory.\n",
                                  int status = 1);
    MSPCProcessGuard(const MSPCProcessGuard&) = delete;
    MSPCProcessGuard& operator=(const MSPCProcessGuard&) = delete;
};
