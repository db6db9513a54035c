#include "MSPDIElementsMended.h"

#include <string>
#include <string_view>

namespace {

// What becomes custom fields.
constexpr std::string_view detailsOfTasks =
    " OutlineNumber Hyperlink HyperlinkAddress HyperlinkSubAddress WBS Contact Manual Active IgnoreResourceCalendar"
    " ActualStart ActualFinish PhysicalPercentComplete Estimated Recurring IsSubproject ExternalTask SubprojectName"
    " ExternalTaskProject CommitmentStart CommitmentFinish StartText FinishText DurationText"
    " LevelingDelay LevelingDelayFormat";

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
        constexpr std::string_view beginningOfTasks = "Tasks(Task(";
        std::string elements(elementsMended);
        return MSPCXMLSelection::fromText(
            elements.insert(elements.find(beginningOfTasks) + beginningOfTasks.size(), detailsOfTasks));
    }();
    return selection;
}
