#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MSPCFileDescriptor.h"

// What one job may take; 0 is no bound.
struct MSPCWorkerBounds {
    std::chrono::milliseconds time{0};
    std::size_t memory = 0;  // bytes of data of the process that does it
};

// How a job came to its end.
struct MSPCJobEnd {
    enum class Kind {
        Done,
        TookTooLong,  // its process was ended
        Died,         // its process ended by itself: a crash, or lack of memory
    };
    Kind kind = Kind::Done;
    std::string result;                 // of a job that is done
    std::string reason;                 // of a process that died: "signal 11", "exit status 2"
    std::chrono::milliseconds time{0};  // since it was given out
    std::size_t worker = 0;             // which of them has done it, from 0 on
};

// Child processes of this one, each of which does one job after another, so that a job that hurts ends no more than its
// own process; another one takes that one's place, and does the job anew where it ended before it had begun. They end
// with this process, however it ends, and inherit what it has open, locks above all: a lock is held as long as one of
// them lives. The process must have one thread only, and ignore SIGPIPE.
class MSPCWorkers {
public:
    // Does a job in a child process, and gives the result. Of those that live at the same time, each has a number of
    // its own, from 0 on.
    using Work = std::function<std::string(const std::string& job, std::size_t worker)>;
    using NextJob = std::function<std::optional<std::string>()>;
    using JobDone = std::function<void(const std::string& job, const MSPCJobEnd& end)>;

    MSPCWorkers(std::size_t count, MSPCWorkerBounds bounds, Work work);
    // Ends those that are still there.
    ~MSPCWorkers();
    MSPCWorkers(const MSPCWorkers&) = delete;
    MSPCWorkers& operator=(const MSPCWorkers&) = delete;

    // Does all jobs that `next` gives, and tells of each when it has come to its end, in whatever order. `pause` is
    // called several times a second meanwhile. None, or the system's description when no process can be had; jobs that
    // were given out by then are told of all the same.
    [[nodiscard]] std::optional<std::string> run(const NextJob& next, const JobDone& done,
                                                 const std::function<void()>& pause);

    // The processors that this process may use; 1 at least.
    [[nodiscard]] static std::size_t processors();
    // The memory of this machine in bytes; 0 when it is not known.
    [[nodiscard]] static std::size_t memoryOfMachine();

private:
    using Instant = std::chrono::steady_clock::time_point;
    struct Worker {
        int process = -1;  // none when it is below 0
        MSPCFileDescriptor jobs;
        MSPCFileDescriptor results;
        std::optional<std::string> job;
        Instant since;
        std::string received;
        bool hasJob = false;  // as far as it is in the pipe as a whole
        int attempts = 0;     // to give it this job
    };

    [[nodiscard]] int start(Worker& worker);
    [[noreturn]] void workInChild(int jobs, int results, std::size_t number);
    [[nodiscard]] std::size_t numberOf(const Worker& worker) const;
    static void give(Worker& worker, std::string job);
    [[nodiscard]] static bool hasBegun(const Worker& worker);
    [[nodiscard]] bool giveToAnother(Worker& worker);
    [[nodiscard]] std::optional<std::string> giveOut(const NextJob& next);
    [[nodiscard]] bool isBusy() const;
    void take(Worker& worker, const JobDone& done);
    void endThoseThatTakeTooLong(const JobDone& done);
    void tell(Worker& worker, MSPCJobEnd end, const JobDone& done);
    // The reason of its end.
    std::string reap(Worker& worker);

    MSPCWorkerBounds _bounds;
    Work _work;
    std::vector<Worker> _workers;
    bool _isAtEnd = false;
};
