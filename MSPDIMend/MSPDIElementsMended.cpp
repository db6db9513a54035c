#include "MSPDIElementsMended.h"

namespace {

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
