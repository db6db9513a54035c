#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCServices.h"
#include "MSPDIMemoryImport.h"

// One thing that can be done to a copy of a plan.
struct MSPDIMendStep {
    std::string_view name;   // "root-task"
    std::string_view what;   // what it does, in a sentence
    std::string_view price;  // what may be lost or invented, in a sentence
    bool isNecessary;        // it mends what ends an import; the others change a plan that imports
};

// All of them, in the order in which they are done.
[[nodiscard]] std::span<const MSPDIMendStep> MSPDIMendSteps();
// None for a name that no step has.
[[nodiscard]] const MSPDIMendStep* MSPDIMendStepNamed(std::string_view name);

struct MSPDIMendOptions {
    // The names of the steps that may be done; with none the necessary ones. What a plan that imports would be changed
    // by is done only when it is named here.
    std::vector<std::string> only;
    bool isAll = false;          // all steps, the improvements too
    std::size_t mostPlaces = 3;  // that are told of each step

    // Whether a step may be done; and whether it is asked for, by its name or with all others.
    [[nodiscard]] bool allows(std::string_view step) const { return only.empty() || isAskedFor(step); }
    [[nodiscard]] bool isAskedFor(std::string_view step) const;
};

// What a step has done.
struct MSPDIMendDone {
    std::string_view step;
    std::size_t count = 0;           // how many elements it has touched, put in or taken out
    std::vector<std::string> where;  // the first ones: "Task UID='7' name='Paint': Priority 'abc'"
};

// What a step has left as it is, since it would have grown beyond a bound.
struct MSPDIMendLeft {
    std::string_view step;
    std::string_view why;   // the bound, in a sentence
    std::size_t count = 0;  // of elements
};

enum class MSPDIMendVerdict {
    ImportsAsIs,  // nothing was to be done
    Mended,       // `bytes` are imported
    NotMendable,  // `obstacle` stands in the way
};

struct MSPDIMended {
    MSPDIMendVerdict verdict = MSPDIMendVerdict::ImportsAsIs;
    // Of the mended plan in UTF-8; empty unless there is one.
    std::string bytes;
    std::vector<MSPDIMendDone> steps;
    std::vector<MSPDIMendLeft> left;  // of a plan that is mended, or imports as it is
    // Why the plan is refused as it is; none for one that imports.
    std::optional<MSPDIRefusal> refusal;
    // What stands in the way, in a sentence; empty unless something does.
    std::string obstacle;
    // The mended plan is written anew, so that bytes differ that no step names: it had another encoding than UTF-8, or
    // markup that had to be repaired, or entities of its own.
    bool isConverted = false;
    bool isRepaired = false;
    // What an import warned of where the plan's markup is damaged, without "WARNING: ": values may be missing. Empty
    // for sound markup.
    std::string damage;
    int imports = 0;  // that it took
};

// Mends a copy of a plan in memory: finds out why the importer refuses it, repairs just that, and imports the copy to
// see that it helped; three imports at most. All bytes of a well-formed plan in UTF-8 but those that the steps name
// stay as they are. `name` is that of the plan's file, for a project that does not name itself. Nothing is written, and
// the log gets nothing; raises nothing that the plan is to blame for but lack of memory.
[[nodiscard]] MSPDIMended MSPDIMendPlan(std::string_view name, std::string bytes, const MSPCServices& services,
                                        const MSPDIMendOptions& options = {});
