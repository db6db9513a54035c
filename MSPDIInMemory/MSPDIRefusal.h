#pragma once

#include <string>
#include <vector>

#include "MSPCLog.h"

// Why a plan was refused, in the importer's own words.
struct MSPDIRefusal {
    std::string name;     // the kind of failure: "MSPIMapperException"
    std::string reason;   // may be empty
    std::string subject;  // what was being mapped: "Task UID='7' name='Paint'"; empty where it is about none

    // The reason and the subject in one line for a person: "Unexpected MSPDI Task Type: 9 (Task UID='7'
    // name='Paint')."
    [[nodiscard]] std::string sentence() const;
};

// Keeps of an import's log what nothing else tells: why it failed, and what it warned of. All of it is handed on.
class MSPDIVerdictLog final : public MSPCLog {
public:
    // `next` outlives this log.
    explicit MSPDIVerdictLog(MSPCLog& next) : _next(next) {}

    // The failure that was told, or one without a reason where none was.
    [[nodiscard]] const MSPDIRefusal& refusal() const { return _refusal; }
    // Without "WARNING: ".
    [[nodiscard]] std::vector<std::string>& warnings() { return _warnings; }

protected:
    void write(std::string_view message) override;

private:
    MSPCLog& _next;
    MSPDIRefusal _refusal;
    std::vector<std::string> _warnings;
};
