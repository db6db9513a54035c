// What becomes of resources and assignments.
#include <algorithm>
#include <iterator>

#include "MSPCTextScanner.h"
#include "MSPDIArrival.h"
#include "MSPDIConditions.h"
#include "MSPDITaskView.h"
#include "MSPDIValues.h"
#include "MSPITimephasedDataMapper.h"

namespace {

const MSPDIResourceFacts& resourceOf(const MSPDILeaf& leaf) {
    return leaf.item.facts.resources[leaf.item.position];
}

const MSPDIAssignmentFacts& assignmentOf(const MSPDILeaf& leaf) {
    return leaf.item.facts.assignments[leaf.item.position];
}

MSPDIJudgement repeated() {
    return {MSPDIFate::Lost, "repeated-element"};
}

// The facts of the task that an assignment is looked up for; none where no task that arrives asks for it.
const MSPDITaskFacts* taskOf(const MSPDILeaf& leaf) {
    const auto& task = assignmentOf(leaf).task;
    return task ? &leaf.item.facts.tasks[*task] : nullptr;
}

std::int64_t tableOfRate(const MSPDILeaf& leaf) {
    return scanInteger64(leaf.item.lastText(leaf.node.parent(), "RateTable")).value_or(0);
}

bool isOwnRate(const MSPDILeaf& leaf) {
    const auto from = leaf.item.lastText(leaf.node.parent(), "RatesFrom");
    return tableOfRate(leaf) == 0 && (from.empty() || from.starts_with("1984-01-01"));
}

// Tables that nobody uses are there with rates of nothing.
bool holdsRate(const MSPDILeaf& leaf) {
    static constexpr std::string_view amounts[] = {"StandardRate", "OvertimeRate", "CostPerUse"};
    return std::any_of(std::begin(amounts), std::end(amounts), [&leaf](std::string_view name) {
        return scanDouble(leaf.item.lastText(leaf.node.parent(), name)).value_or(0) != 0;
    });
}

}  // namespace

MSPDIJudgement resourceText(const MSPDILeaf& leaf) {
    if (!resourceOf(leaf).isMapped) {
        return lostUnlessDefault(leaf);
    }
    return leaf.isLastOfItsName() ? MSPDIFate::Carried : repeated();
}

MSPDIJudgement resourceRate(const MSPDILeaf& leaf) {
    const auto judgement = resourceText(leaf);
    return judgement.fate == MSPDIFate::Carried ? MSPDIArrival::ofRate(leaf.text) : judgement;
}

MSPDIJudgement resourceCostPerUse(const MSPDILeaf& leaf) {
    if (!resourceOf(leaf).isMapped) {
        return lostUnlessDefault(leaf);
    }
    return leaf.isOnlyOfItsName() ? MSPDIArrival::ofCostPerUse(leaf.text) : MSPDIFate::Shaping;
}

MSPDIJudgement resourceUID(const MSPDILeaf& leaf) {
    return resourceOf(leaf).sharesUID ? MSPDIJudgement(MSPDIFate::Changed, "repeated-uid") : MSPDIFate::Shaping;
}

MSPDIJudgement resourceType(const MSPDILeaf& leaf) {
    return resourceOf(leaf).isMapped ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement resourceIsCost(const MSPDILeaf& leaf) {
    const bool isCost = MSPDIIsTrue(leaf.text);
    if (resourceOf(leaf).isMapped && leaf.item.facts.isSavedBy2007OrLater()) {
        return isCost ? MSPDIJudgement(MSPDIFate::Shaping, "cost-resource") : MSPDIFate::Shaping;
    }
    return isCost ? MSPDIJudgement(MSPDIFate::Lost, "cost-resource") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement resourceMaxUnits(const MSPDILeaf& leaf) {
    const auto& resource = resourceOf(leaf);
    if (!resource.isMapped || resource.isMaterial) {
        return lostUnlessDefault(leaf);
    }
    if (!leaf.isLastOfItsName()) {
        return repeated();
    }
    if (scanDouble(leaf.text).value_or(0) != 0) {
        return MSPDIArrival::ofUnits(leaf.text);
    }
    // None at all becomes one.
    return leaf.text.empty() ? MSPDIUnlessBaselineHasOne(leaf, MSPDIFate::Default)
                             : MSPDIJudgement(MSPDIFate::Changed, "resource-units");
}

MSPDIJudgement resourceCalendar(const MSPDILeaf& leaf) {
    const auto& resource = resourceOf(leaf);
    if (!resource.isMapped) {
        return MSPDIFate::Default;  // nobody works by the calendar for unassigned work
    }
    return resource.calendar || !leaf.isOnlyOfItsName() ? MSPDIFate::Shaping : lostUnlessDefault(leaf);
}

MSPDIJudgement resourceRateFormat(const MSPDILeaf& leaf) {
    constexpr std::int64_t perHour = 2;
    const auto rate = scanDouble(leaf.item.fields.text("StandardRate").textOrEmpty()).value_or(0);
    const bool isTold = resourceOf(leaf).isMapped && rate != 0 && scanInteger64(leaf.text).value_or(perHour) != perHour;
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "rate-per-unit") : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement ofFurtherRate(const MSPDILeaf& leaf) {
    // The first rate of the first table is the resource's own.
    const auto own = leaf.item.fields.text(leaf.name());
    const bool saysTheSame = leaf.text == own.textOrEmpty() || scanDouble(leaf.text) == scanDouble(own.textOrEmpty());
    return isOwnRate(leaf) && saysTheSame ? MSPDIJudgement(MSPDIFate::Derived) : lostUnlessDefault(leaf);
}

// When a rate counts, and in which unit: lost with its amounts, which are what is told, and with the end of the own
// rate.
MSPDIJudgement scopeOfRate(const MSPDILeaf& leaf) {
    if (isOwnRate(leaf) || (tableOfRate(leaf) != 0 && !holdsRate(leaf))) {
        return MSPDIFate::Default;
    }
    const auto judgement = lostUnlessDefault(leaf);
    return holdsRate(leaf) ? MSPDIJudgement(judgement.fate) : judgement;
}

MSPDIJudgement assignmentResource(const MSPDILeaf& leaf) {
    const auto& assignment = assignmentOf(leaf);
    const auto uid = scanInteger64(leaf.text);
    if (!leaf.isOnlyOfItsName()) {
        const bool isTold = !assignment.arrives && leaf.isLastOfItsName() && uid && *uid >= 0;
        return isTold ? MSPDIJudgement(MSPDIFate::Shaping, "dropped-assignment") : MSPDIFate::Shaping;
    }
    if (assignment.arrives) {
        // Nothing in the document bears the id of a resource that is not there, or of that for unassigned work.
        return uid && leaf.item.facts.mappedResource(MSPCResourceUID{*uid})
                   ? MSPDIJudgement(MSPDIFate::Carried)
                   : MSPDIJudgement(MSPDIFate::Changed, "dropped-assignment");
    }
    if (assignment.countsForMaterial) {
        return MSPDIFate::Shaping;
    }
    if (!uid || *uid < 0) {
        // That nobody does the work: without it the assignment would be one.
        const bool isAsked = assignment.task && !assignment.isOfSummary;
        return isAsked ? MSPDIFate::Shaping : MSPDIFate::Default;
    }
    return {MSPDIFate::Lost, assignment.isOfSummary ? "summary-assignment" : "dropped-assignment"};
}

MSPDIJudgement assignmentUnits(const MSPDILeaf& leaf) {
    if (assignmentOf(leaf).countsForMaterial) {
        return MSPDIFate::Carried;
    }
    const bool isOfNobody = scanInteger64(leaf.item.fields.text("ResourceUID").textOrEmpty()).value_or(-1) < 0;
    return isOfNobody && MSPDIIsOneOf(leaf.text, "0") ? MSPDIJudgement(MSPDIFate::Default) : lostUnlessDefault(leaf);
}

MSPDIJudgement assignmentWork(const MSPDILeaf& leaf) {
    const auto* const task = taskOf(leaf);
    if (task != nullptr && task->timephasedScenarios != 0) {
        return MSPDIFate::Shaping;
    }
    const bool isTold = task != nullptr && task->hasUnequalShares && assignmentOf(leaf).arrives;
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "unequal-shares") : MSPDIJudgement(MSPDIFate::Derived);
}

// What a cost resource costs is entered with each assignment; of all others it comes from rates and work.
MSPDIJudgement assignmentCost(const MSPDILeaf& leaf) {
    const auto uid = scanInteger64(leaf.item.fields.text("ResourceUID").textOrEmpty());
    const auto resource = uid ? leaf.item.facts.mappedResource(MSPCResourceUID{*uid}) : std::nullopt;
    const bool isEntered = resource && leaf.item.facts.resources[*resource].isCost;
    return isEntered ? lostUnlessDefault(leaf) : MSPDIJudgement(MSPDIFate::Derived);
}

MSPDIJudgement timephasedType(const MSPDILeaf& leaf) {
    // One without a type counts in every scenario.
    return taskOf(leaf) != nullptr ? MSPDIFate::Shaping : MSPDIFate::Default;
}

MSPDIJudgement timephasedValue(const MSPDILeaf& leaf) {
    const auto* const task = taskOf(leaf);
    const auto record = leaf.node.parent();
    const auto type = MSPDISingleInteger(leaf.item.lastChild(record, "Type"));
    bool counts = false;
    bool isOfScenario = false;
    for (int scenario = MSPDIPlanFacts::Actual; scenario <= 10 && task != nullptr; ++scenario) {
        const bool isRead = !type || MSPIIsTimephasedTypeOfScenario(*type, scenario);
        isOfScenario = isOfScenario || isRead;
        counts = counts || (isRead && (task->timephasedScenarios & MSPDIPlanFacts::bitOf(scenario)) != 0);
    }
    if (counts) {
        return MSPDIFate::Shaping;
    }
    // A single stretch says what the task's own dates say.
    if (isOfScenario || leaf.name() != "Value") {
        return MSPDIFate::Derived;
    }
    return lostUnlessDefault(leaf);
}

MSPDIJudgement assignmentBaselineValue(const MSPDILeaf& leaf) {
    const auto* const task = taskOf(leaf);
    const bool mayCount = task != nullptr && task->timephasedScenarios != 0 && leaf.name() == "Work";
    if (mayCount && leaf.item.fields.singleObject("Work")) {
        return MSPDIFate::Shaping;
    }
    return MSPDIFate::Derived;
}
