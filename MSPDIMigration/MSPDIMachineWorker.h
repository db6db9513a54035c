#pragma once

#include <iosfwd>
#include <string>

#include "MSPCServices.h"

struct MSPDIMachineChunk;

// The part of a migration that is done on a machine which GNU parallel has logged in to: a chunk of plans, imported by
// several processes. Documents are made in folders "<chunk>-<number of the plan>" beside the chunk's file and stay
// there; whoever has handed out the chunk gives them their names. So this may be ended at any time, or live on when
// nobody waits for it any more: what it makes then appears nowhere. It ends when the chunk's file is taken away.
//
// Tells in lines, fields with tabs between them, of which the first is the chunk's name:
//
//   "begun"                   all that is needed is there
//   "refused", why            it cannot take part, in words that name no machine
//   number of a plan, record  what became of the plan; its document is named where it was made
class MSPDIMachineWorker {
public:
    // Where the empty document would be that is installed with the program on this machine, and the program's version.
    struct Installation {
        std::string templateFolder;
        std::string version;
    };

    // The services, and the stream, outlive the worker.
    MSPDIMachineWorker(const MSPCServices& services, Installation installation, std::ostream& out);

    // Does the chunk with that name in that folder. False when it could not, or was ended.
    [[nodiscard]] bool work(const std::string& folder, const std::string& chunk);

private:
    [[nodiscard]] bool refuse(const std::string& why);
    [[nodiscard]] std::string obstacle(const std::string& text, const MSPDIMachineChunk& chunk) const;
    [[nodiscard]] bool importPlans(const MSPDIMachineChunk& chunk);
    void tell(const std::string& what, const std::string& more = {});

    const MSPCServices& _services;
    Installation _installation;
    std::ostream& _out;
    std::string _folder;
    std::string _name;
};
