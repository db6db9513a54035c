#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCServices.h"
#include "MSPDIMachineChunk.h"
#include "MSPDIMigrationJob.h"
#include "MSPDIMigrationRecord.h"

class MSPCChildProgram;

// The machines that import plans, and what each of them gets to know.
struct MSPDIMachinesOptions {
    std::vector<std::string> names;  // as GNU parallel takes them: "user@host", ":" for this machine
    std::string program;             // absolute path of this program; machines without it there look in their PATH
    MSPDIMachineChunk chunk;         // without plans
    // Gets a machine's name and what became of it, in one line.
    std::function<void(const std::string& name, const std::string& what)> tell;
};

// Has plans imported on several machines: GNU parallel logs in to them and hands out chunks of plans, one at a time to
// each. All machines see the same files at the same places. A machine that fails loses its chunk to the others, and is
// asked no more where it cannot take part at all, or failed three times.
//
// What names a file never stands where something expands it: chunks are handed out by names of letters and digits,
// their plans stand in files, and the few paths in the command are shell words (MSPDIShellWord).
class MSPDIMachines {
public:
    // Where work is done: a path, the same folder open, and an open file that GNU parallel keeps open, and what it
    // starts here.
    struct Place {
        std::string folder;
        int openFolder = -1;
        int lock = -1;
    };
    using NextPlan = std::function<std::optional<MSPDIPlanToMigrate>()>;
    // Takes a record, whose document is still where it was made, and the name of the folder for that. Gives what is to
    // end the run before its time.
    using Take = std::function<std::optional<std::string>(MSPDIMigrationRecord record, const std::string& work)>;

    // The services outlive the machines.
    MSPDIMachines(const MSPCServices& services, MSPDIMachinesOptions options, std::string outputFolder, Place place);

    // Has all plans imported that `next` gives, some `count`, each once. `pause` is called several times a second.
    // None, or what ended the run before its time: plans that no machine has begun are without a record then.
    [[nodiscard]] std::optional<std::string> run(std::size_t count, const NextPlan& next, const Take& take,
                                                 const std::function<void()>& pause);

    // Why GNU parallel cannot be had, in one line that says what to do; none where it can.
    [[nodiscard]] static std::optional<std::string> obstacle();
    // The machines in a list with commas between them, each once; none where the list cannot be one.
    [[nodiscard]] static std::optional<std::vector<std::string>> namesIn(const std::string& list);

private:
    struct Chunk {
        std::string name;
        std::vector<std::size_t> plans;  // without a record, in order
        std::string refusal;
        bool hasBegun = false;
        bool hasAnswered = false;
        std::string machine;  // of one that has ended, with its exit status
        int status = 0;
    };

    void add(MSPDIMachineChunk content);
    void addAll(std::size_t count, const NextPlan& next);
    void addAgain(const std::vector<Chunk>& failed, bool thatHaveBegun);
    [[nodiscard]] std::optional<MSPDIMachineChunk> contentOf(const Chunk& chunk);
    [[nodiscard]] std::vector<std::string> command() const;
    [[nodiscard]] std::optional<std::string> handOut(const Take& take, const std::function<void()>& pause);
    [[nodiscard]] Chunk* chunkNamed(const std::string& name);
    void takeAnswer(const std::string& line, const Take& take);
    void takeEnd(const std::string& line, MSPCChildProgram& parallel);
    void tellOnce(const std::string& line);
    void judge();
    [[nodiscard]] bool mayTryAgain(const Chunk& chunk);
    [[nodiscard]] std::string whatBecameOf(const Chunk& chunk) const;
    [[nodiscard]] std::optional<std::string> giveUp(const Take& take);
    void clearAway();

    const MSPCServices& _services;
    MSPDIMachinesOptions _options;
    Place _place;
    std::string _run;                           // what all chunks of this run begin their names with
    std::size_t _plans = 0;                     // so far
    std::size_t _number = 0;                    // of the last chunk
    std::vector<Chunk> _chunks;                 // that are handed out at the moment, numbered in their order
    std::map<std::string, int> _failures;       // of machines
    std::map<std::size_t, std::string> _begun;  // plans without a record that a machine had begun on, with its end
    std::set<std::string> _told;
    std::string _lastError;  // that GNU parallel has told
    std::optional<std::string> _failure;
    bool _isToEnd = false;  // GNU parallel was asked to begin nothing more
};
