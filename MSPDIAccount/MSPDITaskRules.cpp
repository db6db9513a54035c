#include <cmath>

#include "MSPCException.h"
#include "MSPCTextScanner.h"
#include "MSPDIArrival.h"
#include "MSPDITaskView.h"
#include "MSPDIValues.h"
#include "MSPITaskMapper.h"

namespace {

constexpr std::int64_t mustStartOn = 2;
constexpr std::int64_t mustFinishOn = 3;
constexpr std::int64_t startNoLater = 5;
constexpr std::int64_t finishNoEarlier = 6;
constexpr std::int64_t finishNoLater = 7;

// Not carried in this scenario: the line of the table decides what that means.
const MSPDIJudgement unread = MSPDIFate::Lost;

// Seconds of work that become the effort; 0 where the duration becomes it.
std::int64_t workSeconds(const MSPDITaskView& task) {
    return std::max<std::int64_t>(MSPDISeconds(task.text("Work")).value_or(0), 0);
}

std::int64_t effortSeconds(const MSPDITaskView& task) {
    const auto work = workSeconds(task);
    if (work > 0) {
        return work;
    }
    return task.has("Duration") ? MSPDISeconds(task.text("Duration")).value_or(0) : 0;
}

// A percentage is read as a whole number; what stands behind its point does not arrive.
bool isWhole(std::string_view text) {
    const auto number = scanDouble(text).value_or(0);
    return number == std::trunc(number);
}

bool hasEffortDone(const MSPDITaskView& task) {
    return task.singleInteger("PercentWorkComplete").value_or(0) > 0;
}

// Where a task begins before its project, or ends behind one that is scheduled from its end, its own date is locked:
// the date of a constraint of that kind arrives only where it is the one that is locked.
MSPDIJudgement lockedDate(const MSPDITaskView& task, std::string_view text, bool isStart) {
    const auto& plan = task.plan();
    if (isStart != plan.isScheduledFromStart || task.facts().isSummary || !plan.projectDate) {
        return MSPDIArrival::ofDate(task.plan(), text);
    }
    const auto own = plan.instantOf(task.text(isStart ? "Start" : "Finish"));
    if (!own || !MSPITaskMapper::isBeyondProject(isStart, *own, *plan.projectDate)) {
        return MSPDIArrival::ofDate(task.plan(), text);
    }
    const auto constraint = plan.instantOf(text);
    if (constraint == own) {
        return MSPDIFate::Derived;
    }
    return MSPITaskMapper::lockedDate(isStart, *own, constraint) == constraint
               ? MSPDIArrival::ofDate(task.plan(), text)
               : MSPDIJudgement(MSPDIFate::Lost, "locked-date");
}

}  // namespace

bool MSPDITaskView::hides(std::string_view name) const {
    return _baseline && name != "Number" && name != _leftOut && _task.fields.singleObject(name) &&
           _task.lastChild(_baseline, name).count > 0;
}

bool MSPDITaskView::has(std::string_view name) const {
    return static_cast<bool>(_task.fields.singleObject(name));
}

std::string MSPDITaskView::text(std::string_view name) const {
    return hides(name) ? _task.lastText(_baseline, name) : _task.fields.text(name).textOrEmpty();
}

std::optional<std::int64_t> MSPDITaskView::singleInteger(std::string_view name) const {
    return _task.fields.lastChild(name).count == 1 ? scanInteger64(text(name)) : std::nullopt;
}

namespace MSPDITaskRules {

MSPDIJudgement carried(const MSPDITaskView& /*task*/, std::string_view /*text*/) {
    return MSPDIFate::Carried;
}

MSPDIJudgement shaping(const MSPDITaskView& /*task*/, std::string_view /*text*/) {
    return MSPDIFate::Shaping;
}

MSPDIJudgement outlineLevel(const MSPDITaskView& task, std::string_view /*text*/) {
    return task.facts().isReachable ? MSPDIJudgement(MSPDIFate::Shaping)
                                    : MSPDIJudgement(MSPDIFate::Shaping, "unreachable-task");
}

MSPDIJudgement start(const MSPDITaskView& task, std::string_view text) {
    return text.empty() ? unread : MSPDIArrival::ofDate(task.plan(), text);
}

MSPDIJudgement finish(const MSPDITaskView& task, std::string_view text) {
    if (text.empty()) {
        return unread;
    }
    if (!task.isSplit()) {
        return MSPDIArrival::ofDate(task.plan(), text);
    }
    // It only says where the end of the last piece is written.
    const bool isTheSame = task.splitEnd() == task.plan().kdzxDateOf(text);
    return isTheSame ? MSPDIJudgement(MSPDIFate::Shaping) : MSPDIJudgement(MSPDIFate::Changed, "split-end");
}

MSPDIJudgement duration(const MSPDITaskView& task, std::string_view text) {
    const auto work = workSeconds(task);
    if (task.isSplit()) {
        return work <= 0 && hasEffortDone(task) ? MSPDIFate::Shaping : MSPDIFate::Derived;
    }
    if (work <= 0) {
        return text.empty() ? MSPDIFate::Carried : MSPDIArrival::ofDuration(text);
    }
    if (task.facts().isSummary) {
        return MSPDIFate::Derived;
    }
    // It still says whether the task is a milestone.
    const bool saysTheSame = MSPDISeconds(text) == work;
    return saysTheSame ? MSPDIJudgement(MSPDIFate::Shaping) : MSPDIJudgement(MSPDIFate::Changed, "duration-not-effort");
}

MSPDIJudgement work(const MSPDITaskView& task, std::string_view text) {
    if (MSPDISeconds(text).value_or(0) <= 0) {
        return unread;
    }
    if (task.isSplit()) {
        return hasEffortDone(task) ? MSPDIFate::Shaping : MSPDIFate::Derived;
    }
    return MSPDIArrival::ofDuration(text);
}

MSPDIJudgement percentComplete(const MSPDITaskView& /*task*/, std::string_view text) {
    constexpr std::int64_t complete = 100;
    const auto percent = scanInteger64(text).value_or(0);
    if (percent <= 0) {
        return unread;
    }
    const bool saysTheSame = percent <= complete && isWhole(text);
    return saysTheSame ? MSPDIJudgement(MSPDIFate::Carried) : MSPDIJudgement(MSPDIFate::Changed, "completion");
}

MSPDIJudgement percentWorkComplete(const MSPDITaskView& task, std::string_view text) {
    constexpr std::int64_t complete = 100;
    const auto percent = scanInteger64(text).value_or(0);
    if (percent <= 0) {
        return unread;
    }
    if (!isWhole(text)) {
        return {MSPDIFate::Changed, "completion"};
    }
    // Of fewer seconds not each percent gives another one.
    const bool tellsApart = percent <= complete && effortSeconds(task) >= complete;
    return tellsApart ? MSPDIFate::Carried : MSPDIFate::Shaping;
}

MSPDIJudgement constraintType(const MSPDITaskView& task, std::string_view /*text*/) {
    const auto type = task.singleInteger("ConstraintType");
    if (type == finishNoEarlier) {
        return {MSPDIFate::Changed, "finish-no-earlier"};
    }
    const bool tellsStartNoLater = type == startNoLater && task.text("ConstraintDate").empty();
    return tellsStartNoLater ? MSPDIJudgement(MSPDIFate::Shaping, "start-no-later") : MSPDIFate::Shaping;
}

MSPDIJudgement constraintDate(const MSPDITaskView& task, std::string_view text) {
    const auto type = task.singleInteger("ConstraintType").value_or(-1);
    if (text.empty() || type < mustStartOn) {
        return MSPDIFate::Default;
    }
    const bool isAtEnd = type == mustFinishOn || type == finishNoEarlier || type == finishNoLater;
    if (isAtEnd && task.isSplit()) {
        const auto judgement =
            type == mustFinishOn ? lockedDate(task, text, false) : MSPDIJudgement(MSPDIFate::Carried);
        return judgement.arrives() ? MSPDIJudgement(MSPDIFate::Changed, "split-end") : judgement;
    }
    if (type == mustStartOn || type == mustFinishOn) {
        return lockedDate(task, text, type == mustStartOn);
    }
    if (type == startNoLater) {
        return {MSPDIFate::Lost, "start-no-later"};
    }
    return type <= finishNoLater ? MSPDIArrival::ofDate(task.plan(), text)
                                 : MSPDIJudgement(MSPDIFate::Lost, "constraint");
}

MSPDIJudgement pinned(const MSPDITaskView& task, std::string_view /*text*/) {
    return task.has("PreLeveledStart") || task.has("PreLeveledFinish") ? MSPDIFate::Shaping : unread;
}

MSPDIJudgement pinnedStart(const MSPDITaskView& task, std::string_view text) {
    const bool isLeveled = task.has("PreLeveledStart") || task.has("PreLeveledFinish");
    const bool isPinned = MSPDIIsTrue(task.text("Pinned"));
    if (text.empty() || !isPinned) {
        return MSPDIFate::Default;
    }
    return isLeveled ? MSPDIArrival::ofDate(task.plan(), text) : MSPDIJudgement(MSPDIFate::Lost, "pinned");
}

MSPDIJudgement fixedCost(const MSPDITaskView& task, std::string_view text) {
    return task.plan().isSavedBy2007OrLater() ? MSPDIArrival::ofFixedCost(text) : unread;
}

}  // namespace MSPDITaskRules
