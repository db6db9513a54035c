#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "MSPDIElement.h"

// A task as it looks in one scenario: in that of a baseline the values of the baseline hide those of the task that bear
// the same names.
class MSPDITaskView {
public:
    // `baseline` is the task's element for the scenario, empty for the plan itself.
    // One of its values can be left out.
    MSPDITaskView(const MSPDIItem& task, int scenario, MSPCXMLNode baseline = {}, std::string_view leftOut = {})
        : _task(task), _scenario(scenario), _baseline(baseline), _leftOut(leftOut) {}

    [[nodiscard]] const MSPDIPlanFacts& plan() const { return _task.facts; }
    [[nodiscard]] const MSPDITaskFacts& facts() const { return _task.facts.tasks[_task.position]; }
    [[nodiscard]] bool isSplit() const { return _task.facts.isSplit(_task.position, _scenario); }
    // When a split task ends in the document.
    [[nodiscard]] std::string_view splitEnd() const { return _task.facts.splitEnd(_task.position, _scenario); }

    [[nodiscard]] bool has(std::string_view name) const;
    // The text of the last field of a name; empty where there is none.
    [[nodiscard]] std::string text(std::string_view name) const;
    // The number of a field that is there once.
    [[nodiscard]] std::optional<std::int64_t> singleInteger(std::string_view name) const;
    // Whether a baseline's value hides the task's.
    [[nodiscard]] bool hides(std::string_view name) const;

private:
    const MSPDIItem& _task;
    int _scenario;
    MSPCXMLNode _baseline;
    std::string_view _leftOut;
};

// What becomes of the fields of a task that the importer reads.
namespace MSPDITaskRules {
MSPDIJudgement carried(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement shaping(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement outlineLevel(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement start(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement finish(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement duration(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement work(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement percentComplete(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement percentWorkComplete(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement constraintType(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement constraintDate(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement pinned(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement pinnedStart(const MSPDITaskView& task, std::string_view text);
MSPDIJudgement fixedCost(const MSPDITaskView& task, std::string_view text);
}  // namespace MSPDITaskRules
