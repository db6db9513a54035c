#include "PlanGenerator.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

namespace {

constexpr std::array<std::pair<std::string_view, PlanShape>, 12> shapeNames = {{
    {"ordinary", PlanShape::Ordinary},
    {"flat", PlanShape::Flat},
    {"late-nesting", PlanShape::LateNesting},
    {"star-links", PlanShape::StarLinks},
    {"one-resource", PlanShape::OneResource},
    {"one-busy-task", PlanShape::OneBusyTask},
    {"reversed-assignments", PlanShape::ReversedAssignments},
    {"many-custom-fields", PlanShape::ManyCustomFields},
    {"material-per-task", PlanShape::MaterialPerTask},
    {"duplicate-uids", PlanShape::DuplicateUIDs},
    {"alternate-baselines", PlanShape::AlternateBaselines},
    {"all-split", PlanShape::AllSplit},
}};

// A small generator with a fixed algorithm, so that a seed means the same plan with every compiler.
class Random {
public:
    explicit Random(std::uint64_t seed) : _state(seed * 0x9E3779B97F4A7C15U + 1) {}

    // 0 to bound - 1.
    std::int64_t below(std::int64_t bound) {
        _state ^= _state << 13;
        _state ^= _state >> 7;
        _state ^= _state << 17;
        return static_cast<std::int64_t>(_state % static_cast<std::uint64_t>(bound));
    }

private:
    std::uint64_t _state;
};

constexpr std::string_view projectHead = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Project xmlns="http://schemas.microsoft.com/project">
	<SaveVersion>14</SaveVersion>
	<Name>Generated.xml</Name>
	<Title>Generated plan</Title>
	<CreationDate>2012-01-02T08:00:00</CreationDate>
	<LastSaved>2012-02-01T17:00:00</LastSaved>
	<ScheduleFromStart>1</ScheduleFromStart>
	<StartDate>2012-01-02T08:00:00</StartDate>
	<FinishDate>2012-12-21T17:00:00</FinishDate>
	<FYStartDate>1</FYStartDate>
	<CriticalSlackLimit>0</CriticalSlackLimit>
	<CurrencyDigits>2</CurrencyDigits>
	<CurrencySymbol>$</CurrencySymbol>
	<CurrencyCode>USD</CurrencyCode>
	<CurrencySymbolPosition>0</CurrencySymbolPosition>
	<CalendarUID>1</CalendarUID>
	<DefaultStartTime>08:00:00</DefaultStartTime>
	<DefaultFinishTime>17:00:00</DefaultFinishTime>
	<MinutesPerDay>480</MinutesPerDay>
	<MinutesPerWeek>2400</MinutesPerWeek>
	<DaysPerMonth>20</DaysPerMonth>
	<DefaultTaskType>0</DefaultTaskType>
	<DurationFormat>7</DurationFormat>
	<WorkFormat>2</WorkFormat>
	<WeekStartDay>1</WeekStartDay>
	<NewTasksEffortDriven>0</NewTasksEffortDriven>
	<HonorConstraints>1</HonorConstraints>
	<MultipleCriticalPaths>0</MultipleCriticalPaths>
	<OutlineCodes/>
	<WBSMasks/>
)";

constexpr std::string_view standardWeek = R"(			<WeekDays>
				<WeekDay><DayType>1</DayType><DayWorking>0</DayWorking></WeekDay>
				<WeekDay><DayType>2</DayType><DayWorking>1</DayWorking><WorkingTimes>
					<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>
					<WorkingTime><FromTime>13:00:00</FromTime><ToTime>17:00:00</ToTime></WorkingTime>
				</WorkingTimes></WeekDay>
				<WeekDay><DayType>3</DayType><DayWorking>1</DayWorking><WorkingTimes>
					<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>
					<WorkingTime><FromTime>13:00:00</FromTime><ToTime>17:00:00</ToTime></WorkingTime>
				</WorkingTimes></WeekDay>
				<WeekDay><DayType>4</DayType><DayWorking>1</DayWorking><WorkingTimes>
					<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>
					<WorkingTime><FromTime>13:00:00</FromTime><ToTime>17:00:00</ToTime></WorkingTime>
				</WorkingTimes></WeekDay>
				<WeekDay><DayType>5</DayType><DayWorking>1</DayWorking><WorkingTimes>
					<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>
					<WorkingTime><FromTime>13:00:00</FromTime><ToTime>17:00:00</ToTime></WorkingTime>
				</WorkingTimes></WeekDay>
				<WeekDay><DayType>6</DayType><DayWorking>1</DayWorking><WorkingTimes>
					<WorkingTime><FromTime>08:00:00</FromTime><ToTime>12:00:00</ToTime></WorkingTime>
					<WorkingTime><FromTime>13:00:00</FromTime><ToTime>17:00:00</ToTime></WorkingTime>
				</WorkingTimes></WeekDay>
				<WeekDay><DayType>7</DayType><DayWorking>0</DayWorking></WeekDay>
			</WeekDays>
			<Exceptions>
				<Exception><EnteredByOccurrences>0</EnteredByOccurrences><TimePeriod><FromDate>2012-12-24T00:00:00</FromDate>
					<ToDate>2012-12-31T23:59:00</ToDate></TimePeriod><Occurrences>8</Occurrences><Name>Holidays</Name>
					<Type>1</Type><DayWorking>0</DayWorking></Exception>
			</Exceptions>
)";

// Children of a task that no importer of schedules needs, as Microsoft Project writes them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 42> idleTaskFields = {{
    {"Active", "1"},
    {"Manual", "0"},
    {"CreateDate", "2012-01-02T08:00:00"},
    {"DurationFormat", "7"},
    {"ResumeValid", "0"},
    {"EffortDriven", "0"},
    {"Recurring", "0"},
    {"OverAllocated", "0"},
    {"Estimated", "0"},
    {"DisplayAsSummary", "0"},
    {"Critical", "0"},
    {"IsSubproject", "0"},
    {"IsSubprojectReadOnly", "0"},
    {"ExternalTask", "0"},
    {"EarlyStart", "2012-01-02T08:00:00"},
    {"EarlyFinish", "2012-01-04T17:00:00"},
    {"LateStart", "2012-03-05T08:00:00"},
    {"LateFinish", "2012-03-07T17:00:00"},
    {"StartVariance", "0"},
    {"FinishVariance", "0"},
    {"WorkVariance", "960000.00"},
    {"FreeSlack", "0"},
    {"TotalSlack", "43200"},
    {"StartSlack", "43200"},
    {"FinishSlack", "43200"},
    {"FixedCostAccrual", "3"},
    {"Cost", "0"},
    {"OvertimeCost", "0"},
    {"OvertimeWork", "PT0H0M0S"},
    {"ActualDuration", "PT0H0M0S"},
    {"ActualCost", "0"},
    {"ActualOvertimeCost", "0"},
    {"ActualWork", "PT0H0M0S"},
    {"ActualOvertimeWork", "PT0H0M0S"},
    {"RegularWork", "PT16H0M0S"},
    {"RemainingDuration", "PT16H0M0S"},
    {"RemainingCost", "0"},
    {"RemainingWork", "PT16H0M0S"},
    {"ACWP", "0.00"},
    {"CV", "0.00"},
    {"CalendarUID", "-1"},
    {"LevelAssignments", "1"},
}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 20> moreIdleTaskFields = {{
    {"LevelingCanSplit", "1"},
    {"LevelingDelay", "0"},
    {"LevelingDelayFormat", "8"},
    {"IgnoreResourceCalendar", "0"},
    {"HideBar", "0"},
    {"Rollup", "0"},
    {"BCWS", "0.00"},
    {"BCWP", "0.00"},
    {"PhysicalPercentComplete", "0"},
    {"EarnedValueMethod", "0"},
    {"IsPublished", "1"},
    {"StatusManager", ""},
    {"CommitmentStart", "2012-01-02T08:00:00"},
    {"CommitmentFinish", "2012-01-04T17:00:00"},
    {"CommitmentType", "0"},
    {"PercentWorkCompleteFormat", "0"},
    {"RemainingOvertimeCost", "0"},
    {"RemainingOvertimeWork", "PT0H0M0S"},
    {"Deadline", "2012-12-21T17:00:00"},
    {"OutlineNumber", "1.1"},
}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 38> idleAssignmentFields = {{
    {"PercentWorkComplete", "0"},
    {"ActualCost", "0"},
    {"ActualOvertimeCost", "0"},
    {"ActualOvertimeWork", "PT0H0M0S"},
    {"ActualWork", "PT0H0M0S"},
    {"ACWP", "0.00"},
    {"Confirmed", "0"},
    {"Cost", "0"},
    {"CostRateTable", "0"},
    {"RateScale", "0"},
    {"CostVariance", "0"},
    {"CV", "0.00"},
    {"Delay", "0"},
    {"Finish", "2012-01-04T17:00:00"},
    {"FinishVariance", "0"},
    {"WorkVariance", "960000.00"},
    {"HasFixedRateUnits", "1"},
    {"FixedMaterial", "0"},
    {"LevelingDelay", "0"},
    {"LevelingDelayFormat", "8"},
    {"LinkedFields", "0"},
    {"Milestone", "0"},
    {"Overallocated", "0"},
    {"OvertimeCost", "0"},
    {"OvertimeWork", "PT0H0M0S"},
    {"RegularWork", "PT16H0M0S"},
    {"RemainingCost", "0"},
    {"RemainingOvertimeCost", "0"},
    {"RemainingOvertimeWork", "PT0H0M0S"},
    {"RemainingWork", "PT16H0M0S"},
    {"ResponsePending", "0"},
    {"Start", "2012-01-02T08:00:00"},
    {"StartVariance", "0"},
    {"UpdateNeeded", "0"},
    {"VAC", "0.00"},
    {"WorkContour", "0"},
    {"BCWS", "0.00"},
    {"BCWP", "0.00"},
}};

constexpr std::int64_t customFieldBase = 188743731;
constexpr std::int64_t tasksPerPhase = 10;

class Generator {
public:
    Generator(const PlanOptions& options, const std::function<void(std::string_view)>& write)
        : _options(options), _write(write), _random(options.seed) {}

    void generate() {
        add("{}", projectHead);
        addDefinitions();
        addCalendars();
        addTasks();
        addResources();
        addAssignments();
        add("</Project>\n");
        flush();
    }

private:
    template <typename... Arguments>
    void add(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
        fmt::format_to(std::back_inserter(_buffer), format, std::forward<Arguments>(arguments)...);
        constexpr std::size_t pieceSize = 1U << 20U;
        if (_buffer.size() >= pieceSize) {
            flush();
        }
    }

    void flush() {
        _write(_buffer);
        _buffer.clear();
    }

    template <typename Fields>
    void addIdleFields(const Fields& fields) {
        for (const auto& [name, value] : fields) {
            add("\t\t\t<{0}>{1}</{0}>\n", name, value);
        }
    }

    [[nodiscard]] std::int64_t definitionCount() const {
        if (_options.definitions > 0) {
            return _options.definitions;
        }
        return _options.shape == PlanShape::ManyCustomFields ? 10000 : 5;
    }

    void addDefinitions() {
        add("\t<ExtendedAttributes>\n");
        for (std::int64_t i = 0; i < definitionCount(); ++i) {
            add("\t\t<ExtendedAttribute><FieldID>{}</FieldID><FieldName>Text{}</FieldName>"
                "<Alias>Custom {}</Alias></ExtendedAttribute>\n",
                customFieldBase + i, i + 1, i + 1);
        }
        add("\t</ExtendedAttributes>\n");
    }

    void addCalendars() {
        add("\t<Calendars>\n");
        add("\t\t<Calendar>\n\t\t\t<UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar>"
            "<BaseCalendarUID>-1</BaseCalendarUID>\n{}\t\t</Calendar>\n",
            standardWeek);
        for (std::int64_t r = 1; r <= resourceCount(); ++r) {
            add("\t\t<Calendar><UID>{}</UID><Name>Resource {}</Name><IsBaseCalendar>0</IsBaseCalendar>"
                "<BaseCalendarUID>1</BaseCalendarUID></Calendar>\n",
                r + 1, r);
        }
        add("\t</Calendars>\n");
    }

    [[nodiscard]] std::int64_t resourceCount() const {
        switch (_options.shape) {
            case PlanShape::OneResource:
                return 1;
            case PlanShape::MaterialPerTask:
                return _options.tasks;
            default:
                return _options.tasks / 20 + 1;
        }
    }

    [[nodiscard]] std::int64_t outlineLevelOf(std::int64_t task) const {
        switch (_options.shape) {
            case PlanShape::Flat:
                return task == 1 ? 1 : 2;
            case PlanShape::LateNesting:
                return task <= _options.tasks / 2 ? 1 : 2;
            default:
                return task % tasksPerPhase == 1 ? 1 : 2;
        }
    }

    [[nodiscard]] bool isSummary(std::int64_t task) const {
        switch (_options.shape) {
            case PlanShape::Flat:
                return task == 1;
            case PlanShape::LateNesting:
                return false;
            default:
                return task % tasksPerPhase == 1;
        }
    }

    void addTasks() {
        add("\t<Tasks>\n");
        addRootTask();
        for (std::int64_t task = 1; task <= _options.tasks; ++task) {
            addTask(task);
        }
        add("\t</Tasks>\n");
    }

    void addRootTask() {
        add("\t\t<Task><UID>0</UID><ID>0</ID><Name>Generated plan</Name><Type>1</Type><IsNull>0</IsNull>"
            "<OutlineLevel>0</OutlineLevel><Priority>500</Priority><Start>2012-01-02T08:00:00</Start>"
            "<Finish>2012-12-21T17:00:00</Finish><Duration>PT2016H0M0S</Duration><Work>PT0H0M0S</Work>"
            "<Summary>1</Summary><Milestone>0</Milestone></Task>\n");
    }

    void addTask(std::int64_t task) {
        const auto uid = _options.shape == PlanShape::DuplicateUIDs ? 1 : task;
        const auto month = 1 + _random.below(11);
        const auto day = 1 + _random.below(27);
        const auto hours = 8 * (1 + _random.below(5));
        const auto constraint = _random.below(20) == 0 ? 4 : 0;
        add("\t\t<Task>\n\t\t\t<UID>{}</UID>\n\t\t\t<ID>{}</ID>\n\t\t\t<Name>Task {} of the plan</Name>\n", uid, task,
            task);
        add("\t\t\t<Type>{}</Type>\n\t\t\t<IsNull>0</IsNull>\n", _random.below(3));
        add("\t\t\t<WBS>{}</WBS>\n\t\t\t<OutlineLevel>{}</OutlineLevel>\n\t\t\t<Priority>{}</Priority>\n", task,
            outlineLevelOf(task), 100 * _random.below(11));
        add("\t\t\t<Start>2012-{0:02}-{1:02}T08:00:00</Start>\n\t\t\t<Finish>2012-{2:02}-{1:02}T17:00:00</Finish>\n"
            "\t\t\t<Duration>PT{3}H0M0S</Duration>\n\t\t\t<Work>PT{3}H0M0S</Work>\n",
            month, day, month + 1, hours);
        addIdleFields(idleTaskFields);
        add("\t\t\t<Summary>{}</Summary>\n\t\t\t<Milestone>0</Milestone>\n\t\t\t<PercentComplete>{}</PercentComplete>\n"
            "\t\t\t<PercentWorkComplete>{}</PercentWorkComplete>\n\t\t\t<FixedCost>0</FixedCost>\n",
            isSummary(task) ? 1 : 0, _random.below(101), _random.below(101));
        add("\t\t\t<ConstraintType>{}</ConstraintType>\n", constraint);
        if (constraint != 0) {
            add("\t\t\t<ConstraintDate>2012-{:02}-{:02}T08:00:00</ConstraintDate>\n", month, day);
        }
        addIdleFields(moreIdleTaskFields);
        addNotes();
        addLinks(task);
        addCustomFieldValues();
        if (_options.shape != PlanShape::AlternateBaselines || task % 2 == 0) {
            addBaselines(hours, _options.shape == PlanShape::AlternateBaselines ? 1 : _options.baselines);
        }
        add("\t\t</Task>\n");
    }

    void addNotes() {
        if (_random.below(10) == 0) {
            add("\t\t\t<Notes>First line of a note\nSecond line with &amp; and &lt;brackets&gt;\n\nLast "
                "line</Notes>\n");
        }
    }

    void addLinks(std::int64_t task) {
        const auto addLink = [&](std::int64_t predecessor) {
            add("\t\t\t<PredecessorLink><PredecessorUID>{}</PredecessorUID><Type>{}</Type>"
                "<CrossProject>0</CrossProject><LinkLag>{}</LinkLag><LagFormat>7</LagFormat></PredecessorLink>\n",
                predecessor, _random.below(4), 4800 * _random.below(3));
        };
        if (_options.shape == PlanShape::StarLinks) {
            addLink(_options.tasks);
        } else if (task > 2 && !isSummary(task)) {
            addLink(1 + _random.below(task - 1));
        }
    }

    void addCustomFieldValues() {
        const bool isAlways = _options.shape == PlanShape::ManyCustomFields;
        if (isAlways || _random.below(5) == 0) {
            const auto field = isAlways ? definitionCount() - 1 : _random.below(definitionCount());
            add("\t\t\t<ExtendedAttribute><FieldID>{}</FieldID><Value>Value {}</Value></ExtendedAttribute>\n",
                customFieldBase + field, _random.below(100));
        }
    }

    void addBaselines(std::int64_t hours, std::int64_t count) {
        for (std::int64_t number = 0; number < count; ++number) {
            add("\t\t\t<Baseline><Number>{0}</Number><Interim>0</Interim><Start>2012-02-{1:02}T08:00:00</Start>"
                "<Finish>2012-03-{1:02}T17:00:00</Finish><Duration>PT{2}H0M0S</Duration>"
                "<DurationFormat>7</DurationFormat><EstimatedDuration>0</EstimatedDuration><Work>PT{2}H0M0S</Work>"
                "<Cost>0</Cost><BCWS>0.00</BCWS><BCWP>0.00</BCWP></Baseline>\n",
                number, 1 + number, hours + 8 * number);
        }
    }

    void addResources() {
        const bool isMaterial = _options.shape == PlanShape::MaterialPerTask;
        add("\t<Resources>\n");
        for (std::int64_t r = 1; r <= resourceCount(); ++r) {
            add("\t\t<Resource>\n\t\t\t<UID>{0}</UID>\n\t\t\t<ID>{0}</ID>\n\t\t\t<Name>Resource {0}</Name>\n"
                "\t\t\t<Type>{1}</Type>\n\t\t\t<IsNull>0</IsNull>\n\t\t\t<Initials>R</Initials>\n"
                "\t\t\t<MaxUnits>1.00</MaxUnits>\n\t\t\t<PeakUnits>1.00</PeakUnits>\n\t\t\t<OverAllocated>0</"
                "OverAllocated>\n"
                "\t\t\t<CanLevel>1</CanLevel>\n\t\t\t<AccrueAt>3</AccrueAt>\n\t\t\t<Work>PT0H0M0S</Work>\n"
                "\t\t\t<StandardRate>50</StandardRate>\n\t\t\t<StandardRateFormat>2</StandardRateFormat>\n"
                "\t\t\t<Cost>0</Cost>\n\t\t\t<OvertimeRate>0</OvertimeRate>\n\t\t\t<CostPerUse>0</CostPerUse>\n"
                "\t\t\t<CalendarUID>{2}</CalendarUID>\n\t\t\t<IsGeneric>0</IsGeneric>\n\t\t</Resource>\n",
                r, isMaterial ? 0 : 1, r + 1);
        }
        add("\t</Resources>\n");
    }

    void addAssignments() {
        add("\t<Assignments>\n");
        for (std::int64_t i = 1; i <= _options.tasks; ++i) {
            const auto task = _options.shape == PlanShape::ReversedAssignments ? _options.tasks + 1 - i : i;
            if (!isSummary(task) || _options.shape == PlanShape::OneBusyTask) {
                addAssignment(i, task);
            }
        }
        add("\t</Assignments>\n");
    }

    void addAssignment(std::int64_t uid, std::int64_t task) {
        const auto resource = _options.shape == PlanShape::MaterialPerTask ? task : 1 + _random.below(resourceCount());
        constexpr std::int64_t busyTask = 2;
        add("\t\t<Assignment>\n\t\t\t<UID>{}</UID>\n\t\t\t<TaskUID>{}</TaskUID>\n\t\t\t<ResourceUID>{}</ResourceUID>\n",
            uid, _options.shape == PlanShape::OneBusyTask ? busyTask : task, resource);
        addIdleFields(idleAssignmentFields);
        add("\t\t\t<Units>1</Units>\n\t\t\t<Work>PT16H0M0S</Work>\n");
        for (std::int64_t number = 0; number < _options.baselines; ++number) {
            add("\t\t\t<Baseline><Number>{}</Number><Start>2012-02-01T08:00:00</Start><Finish>2012-03-01T17:00:00</"
                "Finish>"
                "<Work>PT16H0M0S</Work><Cost>0</Cost><BCWS>0.00</BCWS><BCWP>0.00</BCWP></Baseline>\n",
                number);
        }
        addTimephasedData(uid);
        add("\t\t</Assignment>\n");
    }

    // One record a day from Monday 2012-01-02 on; an interrupted task pauses for a working day before its last record.
    void addTimephasedData(std::int64_t uid) {
        const bool isAllSplit = _options.shape == PlanShape::AllSplit;
        const auto records =
            isAllSplit ? std::max<std::int64_t>(_options.timephasedRecords, 2) : _options.timephasedRecords;
        const bool isSplit = isAllSplit || _random.below(100) < _options.splitPercent;
        for (std::int64_t record = 0; record < records; ++record) {
            const auto pause = isSplit && record + 1 == records ? 1 : 0;
            const auto day = 2 + (record + pause) % 28;
            add("\t\t\t<TimephasedData><Type>1</Type><UID>{0}</UID><Start>2012-01-{1:02}T08:00:00</Start>"
                "<Finish>2012-01-{1:02}T17:00:00</Finish><Unit>2</Unit><Value>PT8H0M0S</Value></TimephasedData>\n",
                uid, day);
        }
    }

    const PlanOptions& _options;
    const std::function<void(std::string_view)>& _write;
    Random _random;
    std::string _buffer;
};

}  // namespace

std::optional<PlanShape> planShapeNamed(std::string_view name) {
    const auto* const found =
        std::find_if(shapeNames.begin(), shapeNames.end(), [&](const auto& shape) { return shape.first == name; });
    return found == shapeNames.end() ? std::nullopt : std::optional(found->second);
}

void generatePlan(const PlanOptions& options, const std::function<void(std::string_view)>& write) {
    Generator(options, write).generate();
}
