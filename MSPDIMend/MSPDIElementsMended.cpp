#include "MSPDIElementsMended.h"

#include <string>
#include <string_view>

namespace {

// What becomes custom fields.
constexpr std::string_view detailsOfTasks =
    " OutlineNumber Hyperlink HyperlinkAddress HyperlinkSubAddress WBS Contact Manual Active IgnoreResourceCalendar"
    " ActualStart ActualFinish PhysicalPercentComplete Estimated Recurring IsSubproject ExternalTask SubprojectName"
    " ExternalTaskProject CommitmentStart CommitmentFinish StartText FinishText DurationText"
    " LevelingDelay LevelingDelayFormat OvertimeWork ActualOvertimeWork RemainingOvertimeWork FixedCostAccrual"
    " LevelAssignments LevelingCanSplit StatusManager AssignmentOwner BoardStatus Sprint";
constexpr std::string_view detailsOfAssignments =
    " Hyperlink HyperlinkAddress HyperlinkSubAddress OvertimeWork Notes WorkContour Delay LevelingDelay"
    " LevelingDelayFormat";

// Calendars and definitions of fields are few, and nearly all of them is looked at.
constexpr const char* elementsMended = R"(
Project(
    SaveVersion Name Title ScheduleFromStart StartDate FinishDate CalendarUID
    CurrencyDigits CurrencySymbol CurrencyCode CurrencySymbolPosition
    MinutesPerDay MinutesPerWeek DaysPerMonth WeekStartDay DurationFormat WorkFormat
    ExtendedAttributes
    Calendars
    Tasks(Task(
        UID Name Type IsNull OutlineLevel Summary Priority CalendarUID
        Start Finish Duration Work PercentComplete PercentWorkComplete FixedCost
        ConstraintType ConstraintDate PreLeveledStart PreLeveledFinish Pinned PinnedStart Deadline
        Notes ExtendedAttribute(FieldID Value) PredecessorLink(PredecessorUID Type LinkLag LagFormat)
        *Baseline(Number)))
    Resources(Resource(
        UID Name Type IsNull IsCostResource Notes ExtendedAttribute(FieldID Value)
        CostPerUse StandardRate MaxUnits CalendarUID EmailAddress
        *Baseline(Number)))
    Assignments(Assignment(
        TaskUID ResourceUID Units Work TimephasedData(Type Start Finish Value)
        *Baseline(Number)))))";

}  // namespace

const MSPCXMLSelection& MSPDIElementsMended() {
    static const auto selection = MSPCXMLSelection::fromText(elementsMended);
    return selection;
}

const MSPCXMLSelection& MSPDIElementsImproved() {
    static const auto selection = [] {
        std::string elements(elementsMended);
        const auto add = [&elements](std::string_view beginning, std::string_view details) {
            elements.insert(elements.find(beginning) + beginning.size(), details);
        };
        add("Tasks(Task(", detailsOfTasks);
        add("Assignments(Assignment(", detailsOfAssignments);
        return MSPCXMLSelection::fromText(elements);
    }();
    return selection;
}
