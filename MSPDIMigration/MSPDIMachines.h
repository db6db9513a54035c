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
#include "MSPDIMigrationRecord.h"
#include "MSPDIPlansToMigrate.h"

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
    struct Answer {
        std::size_t number = 0;       // of the plan
        MSPDIMigrationRecord record;  // its document is where it was made
        std::string work;             // the folder that it was made in, by its name in the folder for work
    };
    // Gives what ends the run before its time.
    using Take = std::function<std::optional<std::string>(const Answer&)>;

    // Work is done in that folder, which is open as `work`, too. `lock` is an open file that GNU parallel keeps open,
    // and what it starts here. The services outlive the machines.
    MSPDIMachines(const MSPCServices& services, MSPDIMachinesOptions options, std::string workFolder, int work,
                  int lock);

    // Has the plans of these numbers imported, each once. `pause` is called several times a second. None, or what ended
    // the run before its time: plans that no machine has begun are without an answer then.
    [[nodiscard]] std::optional<std::string> run(const std::vector<MSPDIPlanToMigrate>& plans,
                                                 std::vector<std::size_t> wanted, const Take& take,
                                                 const std::function<void()>& pause);

    // Why GNU parallel cannot be had, in one line that says what to do; none where it can.
    [[nodiscard]] static std::optional<std::string> obstacle();
    // The machines in a list with commas between them, each once; none where the list cannot be one.
    [[nodiscard]] static std::optional<std::vector<std::string>> namesIn(const std::string& list);

private:
    struct Chunk {
        std::string name;
        std::set<std::size_t> plans;  // without an answer
        std::string refusal;
        bool hasBegun = false;
        bool hasAnswered = false;
        std::string machine;  // of one that has ended, with its exit status
        int status = 0;
    };

    void prepare(const std::vector<MSPDIPlanToMigrate>& plans, const std::vector<std::size_t>& wanted);
    [[nodiscard]] std::vector<std::string> command() const;
    [[nodiscard]] std::optional<std::string> handOut(const Take& take, const std::function<void()>& pause);
    void takeAnswer(const std::string& line, const Take& take);
    void takeEnd(const std::string& line, MSPCChildProgram& parallel);
    void tellOnce(const std::string& line);
    void judge();
    [[nodiscard]] bool mayTryAgain(const Chunk& chunk);
    [[nodiscard]] std::string whatBecameOf(const Chunk& chunk) const;
    [[nodiscard]] std::optional<std::string> giveUp(const std::vector<MSPDIPlanToMigrate>& plans,
                                                    const std::vector<std::size_t>& missing, const Take& take);
    void clearAway();

    const MSPCServices& _services;
    MSPDIMachinesOptions _options;
    std::string _workFolder;
    int _work;
    int _lock;
    std::string _run;                            // what all chunks of this run begin their names with
    std::size_t _count = 0;                      // of chunks so far
    std::vector<Chunk> _chunks;                  // that are handed out at the moment, in their order
    std::map<std::string, std::size_t> _places;  // of chunks, by their names
    std::map<std::string, int> _failures;        // of machines
    std::map<std::size_t, std::string> _begun;   // plans without an answer that a machine had begun on, with its end
    std::set<std::string> _told;
    std::vector<std::string> _errors;  // what GNU parallel said
    std::optional<std::string> _failure;
    bool _isToEnd = false;  // GNU parallel was asked to begin nothing more
};
