#include "MSPIElementsRead.h"

namespace {

// A baseline shows its values in the children of its owner that bear the same names. All of them are read once, for all
// scenarios together.
constexpr const char* elementsRead = R"(
Project(
    SaveVersion Name Title ScheduleFromStart StartDate FinishDate
    CurrencyDigits CurrencySymbol CurrencyCode CurrencySymbolPosition
    MinutesPerDay MinutesPerWeek DaysPerMonth WeekStartDay DurationFormat WorkFormat
    ExtendedAttributes(ExtendedAttribute(FieldID FieldName Alias CFType))
    Calendars(Calendar(
        UID Name IsBaseCalendar
        WeekDays(WeekDay(
            DayType DayWorking TimePeriod(FromDate ToDate) WorkingTimes(WorkingTime(FromTime ToTime))))
        Exceptions(Exception(
            Type DayWorking TimePeriod(FromDate ToDate) WorkingTimes(WorkingTime(FromTime ToTime))))
        WorkWeeks(WorkWeek(TimePeriod(FromDate ToDate)))))
    Tasks(Task(
        UID Name Type IsNull OutlineLevel Summary Priority
        Start Finish Duration Work PercentComplete PercentWorkComplete FixedCost
        ConstraintType ConstraintDate PreLeveledStart PreLeveledFinish Pinned PinnedStart
        Notes ExtendedAttribute(FieldID Value) PredecessorLink(PredecessorUID Type)
        ~*Baseline(Number)))
    Resources(Resource(
        UID Name Type IsCostResource Notes ExtendedAttribute(FieldID Value)
        CostPerUse StandardRate MaxUnits CalendarUID EmailAddress
        ~*Baseline(Number)))
    Assignments(Assignment(
        TaskUID ResourceUID Units Work TimephasedData(Type Start Finish Value)
        ~*Baseline(Number)))))";

}  // namespace

const MSPCXMLSelection& MSPIElementsRead() {
    static const auto selection = MSPCXMLSelection::fromText(elementsRead);
    return selection;
}
