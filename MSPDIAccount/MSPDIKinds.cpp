#include "MSPDIKinds.h"

#include <map>

namespace {

constexpr MSPDIKind kinds[] = {
    // What was read may not be what was meant.
    {"overwritten-by-repair", "the file was damaged and mended on reading; values may be missing"},
    {"unreadable-characters", "texts with characters that no document can hold, which are replaced"},
    {"external-text", "texts that stand in other files, which are never read"},
    // Work that is gone, or stands elsewhere.
    {"unreachable-task", "tasks that no group leads to"},
    {"repeated-uid", "tasks and resources that share their number with others, and get one id with them"},
    {"summer-time", "dates that get another offset because the import is run in summer"},
    {"odd-date", "dates in a form that does not arrive whole: without seconds, or with fractions of them"},
    {"odd-duration",
     "work and durations whose sign, days or fractions of seconds do not arrive, or that are too large"},
    {"whole-hours", "the working hours of a day or a week, which become whole ones"},
    {"deadline", "deadlines"},
    {"link-lag", "the lag of links"},
    {"dropped-link", "links to tasks that do not arrive, or that share a number with others", "PredecessorLink"},
    {"link-type", "links of an unknown type"},
    {"start-no-later", "\"start no later than\", which is dropped"},
    {"finish-no-earlier", "\"finish no earlier than\", which schedules as late as possible instead"},
    {"locked-date", "the date of a constraint, where the task begins before its project or ends behind it"},
    {"constraint", "constraints of an unknown type"},
    {"manual-task", "tasks that are scheduled by hand"},
    {"inactive-task", "inactive tasks, which become active"},
    {"split-end", "ends of split tasks, which become those of their last pieces"},
    {"duration-not-effort", "durations other than the work: only effort arrives"},
    {"elapsed-duration", "elapsed durations, which count nights and weekends"},
    {"milestone", "tasks that are milestones, or none, against their duration"},
    {"assignment-units", "units of assignments other than 100%"},
    {"unequal-shares", "shares of a task's work, where its resources have different ones"},
    {"summary-assignment", "assignments of summary tasks"},
    {"dropped-assignment", "assignments of tasks or resources that do not arrive"},
    {"assignment-delay", "delays of assignments"},
    {"work-contour", "contours of work: how it is spread over the time"},
    {"project-calendar", "the plan's own calendar, which is not the one taken"},
    {"task-calendar", "calendars of tasks", "Task"},
    {"resource-week", "working weeks of resources: base calendars, or days off of their own"},
    {"recurring-exception", "recurring exceptions of calendars", "Exception"},
    {"exception-2003", "exceptions in the form of 2003", "WeekDay"},
    {"calendar-exception", "exceptions of calendars without a type, or working ones without hours", "Exception"},
    {"work-weeks", "work weeks: other working times for some weeks", "WorkWeek"},
    {"overnight-time", "working time that ends at midnight or on the next day: its end becomes one of the same day"},
    {"unused-calendar", "calendars that do not arrive, since no resource has them", "Calendar"},
    {"calendar-name", "names of calendars"},
    {"exception-name", "names of holidays and other exceptions"},
    {"actual-dates", "actual starts and finishes"},
    {"status-date", "the status date"},
    {"completion", "completion that cannot be carried over"},
    {"physical-progress", "physical completion"},
    {"work", "work that cannot be carried over"},
    {"overtime", "overtime work"},
    {"leveling-delay", "delays by leveling"},
    {"leveling-settings", "tasks and resources that leveling is not to delay, split or assign anew", "Resource|Task"},
    {"pinned", "pinned starts"},
    {"timephased-data", "values spread over the time"},
    // Costs and resources.
    {"fixed-cost", "fixed costs"},
    {"cost-resource", "cost resources, which become material, and the costs entered for them"},
    {"rounded-amount", "costs, rates and units that are rounded, or no numbers"},
    {"rate-per-unit", "rates that are not per hour, but are taken so"},
    {"further-rates", "further rates, by table and date", "Rate|Assignment"},
    {"overtime-rate", "rates for overtime"},
    {"cost-accrual", "costs that are due at the start or the end, not with the work"},
    {"material-rate", "material that is used by the day or the week"},
    {"default-rates", "rates for new resources"},
    {"availability", "when, and how much, resources are available", "AvailabilityPeriod|Resource"},
    {"resource-units", "maximum units of resources"},
    {"material-label", "units of material"},
    {"booking-type", "proposed bookings"},
    {"budget", "budgets"},
    {"baseline-cost", "costs of baselines"},
    {"baseline-value", "values of baselines that the task itself lacks"},
    {"further-baseline", "baselines with another number than 0 to 10", "Baseline"},
    {"baseline-calendar", "the calendar of the baseline"},
    // What people have written.
    {"notes", "notes that cannot be carried over"},
    {"assignment-notes", "notes of assignments"},
    {"hyperlink", "hyperlinks"},
    {"wbs", "WBS codes"},
    {"unregistered-field", "custom fields that are missing in the table of contents although tasks hold values"},
    {"unregistered-resource-field",
     "custom fields that are missing in the table of contents although resources hold values"},
    {"undefined-field", "values of custom fields without a definition"},
    {"repeated-field", "values of custom fields whose name another one has too"},
    {"assignment-fields", "custom fields of assignments"},
    {"lookup-or-formula", "lookup tables and formulas of custom fields", "ExtendedAttribute"},
    {"custom-field-definition", "names of custom fields without values"},
    {"phonetic-name", "how names are pronounced"},
    {"outline-code", "outline codes", "OutlineCode"},
    {"subproject", "subprojects and links to other files", "PredecessorLink|Task"},
    {"recurring-task", "tasks that recur"},
    {"contact", "contacts"},
    {"commitment", "commitments"},
    {"estimated", "marks of durations as estimated"},
    {"manual-text", "dates and durations entered as text"},
    {"task-details", "further details of tasks"},
    {"resource-group", "groups of resources"},
    {"resource-details", "further details of resources"},
    {"assignment-details", "further details of assignments"},
    {"summary-task", "the name and the priority of the project's summary task"},
    {"unassigned-resource", "what the resource for unassigned work holds"},
    {"empty-row", "what empty rows hold"},
    // The file as such.
    {"document-properties", "properties of the document: author, company, subject, ..."},
    {"document-history", "when the document was made and saved"},
    {"currency", "the currency"},
    {"work-format", "the unit of work"},
    {"calculation-settings", "settings of the calculation"},
    {"default-times", "the time of day that dates without one get"},
    {"fiscal-year", "the fiscal year, where it is not that of the calendar"},
    {"wbs-mask", "the form of WBS codes", "WBSMask|WBSMasks"},
    {"views-and-filters", "views, tables, filters, groups, reports and macros"},
    {"display-settings", "how bars are shown"},
    {"repeated-element", "elements that are repeated: another one counts"},
    {"stray-text", "texts beside elements, where nobody reads them"},
    {"unknown-element", "elements that nobody knows"},
};

}  // namespace

std::span<const MSPDIKind> MSPDIKinds() {
    return kinds;
}

bool MSPDIMatters(std::string_view kind) {
    static const auto firstOfFile = MSPDIKindIndex("document-properties");
    return MSPDIKindIndex(kind) < firstOfFile;
}

std::size_t MSPDIKindIndex(std::string_view name) {
    static const auto indexes = [] {
        std::map<std::string_view, std::size_t> byName;
        for (std::size_t index = 0; index < std::size(kinds); ++index) {
            byName[kinds[index].name] = index;
        }
        return byName;
    }();
    const auto found = indexes.find(name);
    return found == indexes.end() ? std::size(kinds) : found->second;
}
