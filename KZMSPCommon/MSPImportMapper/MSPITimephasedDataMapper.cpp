#include "MSPITimephasedDataMapper.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <memory>

#include "MSPCExtensions.h"
#include "MSPISubject.h"

namespace {

// MSPDI types of timephased work of an assignment's baselines 0 to 10.
constexpr std::array<std::int64_t, 11> baselineWorkTypes = {4, 16, 22, 28, 34, 40, 46, 52, 58, 64, 70};

MSPCTimeInterval assignedWorkOf(std::span<const MSPCXMLNode> assignments) {
    MSPCTimeInterval work = 0;
    for (const auto& assignment : assignments) {
        work += MSPIUtilities::mspdiToMppDuration(textForXQuery(assignment, "Work").textOrEmpty());
    }
    return work;
}

// Timephased work that adds up to something else than the assigned work is stretched to it.
void scaleToAssignedWork(MSPITimephasedSpans& spans, MSPCTimeInterval assignedWork) {
    MSPCTimeInterval timephasedWork = 0;
    for (const auto& span : spans) {
        timephasedWork += span.duration();
    }
    if (assignedWork > 0 && timephasedWork > 0 && assignedWork != timephasedWork) {
        for (auto& span : spans) {
            span.setWorkScale(assignedWork / timephasedWork);
        }
    }
}

}  // namespace

bool MSPIIsTimephasedTypeOfScenario(std::int64_t type, std::int32_t baselineNumber) {
    if (baselineNumber < 0) {
        return type >= 1 && type <= 3;  // remaining work, actual work, actual overtime work
    }
    const auto number = static_cast<std::size_t>(baselineNumber);
    return number < baselineWorkTypes.size() && type == baselineWorkTypes[number];
}

std::vector<MSPCXMLNewElement> MSPITimephasedDataMapper::newSplitTasksFromMspdiTask(const MSPCFields& mspTask) {
    std::vector<MSPCXMLNewElement> pieces;
    Error error;
    const MSPCTaskUID uid{mspTask.intValue("UID", &error)};
    if (error || _mapper.index().timephasedAssignmentsByTaskUID().nodesWithKey(uid).empty()) {
        return pieces;
    }
    const auto taskName = mspTask.text("Name");
    const auto addPieces = [&](const MSPITimephasedSpans& stretches) {
        for (const auto& stretch : stretches) {
            pieces.push_back(newTaskFromStretch(stretch, taskName.textOrEmpty()));
            _taskEndDate = std::max(_taskEndDate, stretch.endDate());
        }
    };
    auto& known = _mapper.stretchCache();
    if (const auto* stretches = known.find(uid)) {
        _mapper.growthBounds().addRepeatedPieces(stretches->size());
        addPieces(*stretches);
    } else {
        const auto found = stretchesOfSpans(spansOfTask(uid, taskName.textOrEmpty()));
        known.add(uid, found);
        addPieces(found);
    }
    return pieces;
}

MSPITimephasedSpans MSPITimephasedDataMapper::spansOfTask(MSPCTaskUID uid, std::string_view taskName) const {
    MSPITimephasedSpans spans;
    const auto sharedName = std::make_shared<const std::string>(taskName);
    const auto& timephased = _mapper.index().timephasedAssignmentsByTaskUID();
    for (const auto& assignment : timephased.nodesWithKey(uid)) {
        _mapper.assignmentLooks().lookAt(assignment, timephased, _mapper.growthBounds());
        MSPITellingSubject([&] { return MSPISubjectOfAssignment(assignment, _mapper.hiddenElements()); },
                           [&] { collectSpansOfAssignment(assignment, sharedName, spans); });
    }
    if (!spans.empty()) {
        const auto& byTaskUID = _mapper.index().assignmentsByTaskUID();
        for (const auto& assignment : byTaskUID.nodesWithKey(uid)) {
            _mapper.assignmentLooks().lookAt(assignment, byTaskUID, _mapper.growthBounds());
        }
        scaleToAssignedWork(spans, assignedWorkOf(byTaskUID.nodesWithKey(uid)));
    }
    return spans;
}

void MSPITimephasedDataMapper::collectSpansOfAssignment(const MSPCXMLNode& assignment,
                                                        const std::shared_ptr<const std::string>& taskName,
                                                        MSPITimephasedSpans& spans) const {
    const auto& conversions = _mapper.conversions();
    for (auto record = assignment.firstChildElement("TimephasedData"); record;
         record = record.nextSiblingElement("TimephasedData")) {
        Error error;
        const auto type = intValueForXQuery(record, "Type", &error);
        // Deliberate: a record without a type counts in every scenario.
        if (!error && !MSPIIsTimephasedTypeOfScenario(type, _mapper.baselineNumber())) {
            continue;
        }
        const auto start = textForXQuery(record, "Start");
        const auto finish = textForXQuery(record, "Finish");
        const auto value = textForXQuery(record, "Value");
        spans.emplace_back(taskName, type, conversions.mspdiToMppDateTime(start.textOrEmpty()),
                           conversions.mspdiToMppDateTime(finish.textOrEmpty()),
                           MSPIUtilities::mspdiToMppDuration(value.textOrEmpty()));
    }
}

// None when the task is not split.
MSPITimephasedSpans MSPITimephasedDataMapper::stretchesOfSpans(MSPITimephasedSpans spans) const {
    if (spans.size() < 2) {
        return {};
    }
    const auto& calendar =
        _mapper.scheduleCalendar() != nullptr ? *_mapper.scheduleCalendar() : _mapper.conversions().standardCalendar();
    const auto workingTime = [&calendar](MSPCInstant from, MSPCInstant to) {
        return calendar.workingTimeFromDateToDate(from, to);
    };
    std::erase_if(spans, [](const auto& span) { return !span.startDate() || !span.endDate(); });
    sortSpans(spans);
    for (auto& span : spans) {
        span.sortResourceUIDs();
    }
    const auto kept = mergedSpans(std::move(spans), workingTime);
    if (kept.size() < 2) {
        return {};
    }
    auto stretches = joinedStretches(kept, workingTime);
    if (stretches.size() < 2) {
        return {};
    }
    for (auto& stretch : stretches) {
        if (const auto start = calendar.startDateForDateForward(*stretch.startDate(), MSPEDirection::Forward)) {
            stretch.setStartDate(start);
        }
    }
    return stretches;
}

MSPCXMLNewElement MSPITimephasedDataMapper::newTaskFromStretch(const MSPITimephasedDataInfo& stretch,
                                                               std::string_view taskName) const {
    auto newTask = _mapper.newElement("task");
    const auto task = newTask.node();
    const auto addChild = [&task](std::string_view name, std::string_view text) {
        addChildElementWithNameStringValue(task, name, text);
    };
    const auto& conversions = _mapper.conversions();
    setAttributeWithNameStringValue(task, "id", _mapper.getTempSplitTaskID());
    _mapper.growthBounds().addRepeatedName(taskName.size());
    addChild("title", taskName);
    const auto scale = stretch.workScale() != 0 ? stretch.workScale() : 1.0;
    addChild("effort", MSPIUtilities::mppToKdzxDuration(stretch.duration() * scale));
    if (const auto start = conversions.mppToKdzxDateTime(stretch.startDate())) {
        addChild("start-constraint-date", *start);
        addChild("start-date", *start);
    }
    if (const auto end = conversions.mppToKdzxDateTime(stretch.endDate())) {
        addChild("end-date", *end);
    }
    addChild("duration", MSPIUtilities::mppToKdzxDuration(stretch.duration()));
    for (const auto uid : stretch.resourceUIDs()) {
        if (MSPCNumberOf(uid) > 0) {
            setAttributeWithNameStringValue(addChildElementWithName(task, "assignment"), "idref",
                                            _mapper.idMapper().resourceIdFromMspdiUID(uid));
        }
    }
    return newTask;
}
