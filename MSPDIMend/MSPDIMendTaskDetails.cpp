#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <span>
#include <vector>

#include "MSPCException.h"
#include "MSPCTextScanner.h"
#include "MSPDIElementTable.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPDITaskWords.h"
#include "MSPDIValues.h"
#include "MSPIUtilities.h"

namespace {

// How a value is told. Flags are told by what they say: "yes", or words of their own where they are set, or where they
// are not.
enum class Telling { AsItIs, Flag, FlagNotSet, Delay, Work, Calendar, Contour };

struct Detail {
    std::string_view name;   // of the element
    std::string_view words;  // "{}" stands for the value; a flag may have words of its own
    Telling telling = Telling::AsItIs;
};

// A step, the name of the field that it makes, and the elements of a task, and of its assignments, that become its
// value.
struct Move {
    std::string_view step;
    std::string_view alias;
    std::span<const Detail> details;
    std::span<const Detail> ofAssignments{};
};

constexpr Detail hyperlink[] = {{"Hyperlink", "{}"}, {"HyperlinkAddress", "{}"}, {"HyperlinkSubAddress", "#{}"}};
constexpr Detail wbs[] = {{"WBS", "{}"}};
constexpr Detail contact[] = {{"Contact", "{}"}};
constexpr Detail manual[] = {{"Manual", "{}", Telling::Flag}};
constexpr Detail active[] = {{"Active", "{}", Telling::Flag}};
constexpr Detail calendar[] = {{"CalendarUID", "{}", Telling::Calendar},
                               {"IgnoreResourceCalendar", "calendars of resources do not count", Telling::Flag}};
constexpr Detail actual[] = {{"ActualStart", "started {}"}, {"ActualFinish", "finished {}"}};
constexpr Detail physical[] = {{"PhysicalPercentComplete", "{}%"}};
constexpr Detail estimated[] = {{"Estimated", "{}", Telling::Flag}};
constexpr Detail recurring[] = {{"Recurring", "{}", Telling::Flag}};
constexpr Detail subproject[] = {{"IsSubproject", "stands for a project", Telling::Flag},
                                 {"ExternalTask", "a task of another project", Telling::Flag},
                                 {"SubprojectName", "{}"},
                                 {"ExternalTaskProject", "{}"}};
constexpr Detail commitment[] = {{"CommitmentStart", "from {}"}, {"CommitmentFinish", "until {}"}};
constexpr Detail entered[] = {
    {"StartText", "start: {}"}, {"FinishText", "finish: {}"}, {"DurationText", "duration: {}"}};
constexpr Detail leveling[] = {{"LevelingDelay", "{}", Telling::Delay}};
constexpr Detail overtime[] = {{"OvertimeWork", "{}", Telling::Work},
                               {"ActualOvertimeWork", "{} done", Telling::Work},
                               {"RemainingOvertimeWork", "{} remaining", Telling::Work}};
constexpr Detail overtimeOfAssignment[] = {{"OvertimeWork", "{}", Telling::Work}};
constexpr Detail accrual[] = {{"FixedCostAccrual", "fixed costs are due at the start", Telling::Flag}};
constexpr Detail levelingSettings[] = {
    {"LevelAssignments", "leveling does not move its assignments", Telling::FlagNotSet},
    {"LevelingCanSplit", "leveling does not split it", Telling::FlagNotSet}};
constexpr Detail furtherDetails[] = {{"StatusManager", "status manager: {}"},
                                     {"AssignmentOwner", "owner of assignments: {}"},
                                     {"BoardStatus", "board: {}"},
                                     {"Sprint", "sprint: {}"}};
constexpr Detail assignmentNotes[] = {{"Notes", "{}"}};
constexpr Detail contour[] = {{"WorkContour", "{}", Telling::Contour}};
constexpr Detail assignmentDelay[] = {{"Delay", "{}", Telling::Delay},
                                      {"LevelingDelay", "{} by leveling", Telling::Delay}};

constexpr Move moves[] = {
    {"hyperlink-to-field", "Hyperlink", hyperlink, hyperlink},
    {"wbs-to-field", "WBS", wbs},
    {"contact-to-field", "Contact", contact},
    {"manual-to-field", "Scheduled by hand", manual},
    {"active-to-field", "Active", active},
    {"calendar-to-field", "Task calendar", calendar},
    {"actual-to-field", "Actual dates", actual},
    {"physical-to-field", "Physical completion", physical},
    {"estimated-to-field", "Estimated", estimated},
    {"recurring-to-field", "Recurring", recurring},
    {"subproject-to-field", "Subproject", subproject},
    {"commitment-to-field", "Commitment", commitment},
    {"entered-to-field", "Entered as text", entered},
    {"leveling-to-field", "Leveling delay", leveling},
    {"overtime-to-field", "Overtime", overtime, overtimeOfAssignment},
    {"accrual-to-field", "Cost accrual", accrual},
    {"leveling-settings-to-field", "Leveling", levelingSettings},
    {"details-to-field", "Further details", furtherDetails},
    {"assignment-notes-to-field", "Assignment notes", {}, assignmentNotes},
    {"contour-to-field", "Work contour", {}, contour},
    {"assignment-delay-to-field", "Assignment delay", {}, assignmentDelay},
};

// By the numbers that plans have for them.
constexpr std::string_view contours[] = {"flat",      "back loaded", "front loaded", "double peak", "early peak",
                                         "late peak", "bell",        "turtle",       "contoured"};

constexpr std::string_view notSet = "0|false|no";

// The account of losses decides what a value that is not carried over says.
bool isLost(const MSPCXMLNode& owner, const MSPCXMLNode& value, const std::string& text) {
    const auto* const element =
        MSPDIElementAt(owner.name() == "Task" ? "Tasks/Task" : "Assignments/Assignment", value.name());
    if (element == nullptr || text.empty()) {
        return false;
    }
    const bool saysTheSame = value.name() == "WBS" && MSPDITextIn(owner, "OutlineNumber") == text;
    return !saysTheSame && !MSPDIIsOneOf(text, element->defaults);
}

// A delay is saved in tenths of minutes, whatever its format shows.
std::string delayInWords(const std::string& text, std::int64_t format) {
    if (!MSPDIWholeNumber(text)) {
        return text;
    }
    const auto* elapsed = MSPDIIsElapsedFormat(format) ? ", elapsed" : "";
    return MSPDITenthsOfMinutesInWords(scanInteger64(text).value_or(0)) + elapsed;
}

std::string workInWords(const std::string& text) {
    constexpr std::int64_t secondsInTenthOfMinute = 6;
    try {
        return MSPDITenthsOfMinutesInWords(MSPIUtilities::mspdiDurationInSecs(text) / secondsInTenthOfMinute);
    } catch (const MSPCException&) {
        return text;
    }
}

std::string contourInWords(const std::string& text) {
    const auto number = scanInteger64(text).value_or(-1);
    const bool isKnown = number >= 0 && number < static_cast<std::int64_t>(std::size(contours));
    return isKnown ? std::string(contours[static_cast<std::size_t>(number)]) : text;
}

// A flag with words of its own is told where they are true.
bool saysSomething(const Detail& detail, const std::string& text) {
    const bool isOwnWords = detail.words.find("{}") == std::string_view::npos;
    return detail.telling == Telling::FlagNotSet ? MSPDIIsOneOf(text, notSet) : !isOwnWords || MSPDIIsTrue(text);
}

class TaskDetails {
public:
    explicit TaskDetails(MSPDIPatient& patient) : _patient(patient) {
        for (const auto& move : moves) {
            if (patient.isAskedFor(move.step)) {
                for (const auto& detail : move.details) {
                    _asked.emplace(detail.name, std::pair(&move, &detail));
                }
                for (const auto& detail : move.ofAssignments) {
                    _askedOfAssignments.emplace(detail.name, std::pair(&move, &detail));
                }
            }
        }
    }

    void move() {
        if (_asked.empty() && _askedOfAssignments.empty()) {
            return;
        }
        findAssignments();
        for (const auto& task : MSPDITasksWithFields(_patient)) {
            collect(task, task, _asked, "");
            collectOfAssignments(task);
        }
        for (const auto& move : moves) {
            _words[&move].moveIntoField(_patient, move.step, move.alias);
        }
    }

private:
    using Asked = std::map<std::string_view, std::pair<const Move*, const Detail*>>;

    // Those with anything to move, by the UIDs of their tasks.
    void findAssignments() {
        for (const auto& assignment :
             _askedOfAssignments.empty() ? std::vector<MSPCXMLNode>() : _patient.items("Assignments", "Assignment")) {
            auto child = assignment.firstChild();
            while (child && !_askedOfAssignments.contains(child.name())) {
                child = child.nextSibling();
            }
            if (child) {
                _assignments[MSPDITextIn(assignment, "TaskUID").value_or("")].push_back(assignment);
            }
        }
    }

    void collectOfAssignments(const MSPCXMLNode& task) {
        const auto found =
            _assignments.empty() ? _assignments.end() : _assignments.find(MSPDITextIn(task, "UID").value_or(""));
        if (found == _assignments.end()) {
            return;
        }
        for (const auto& assignment : found->second) {
            collect(task, assignment, _askedOfAssignments, nameOfResource(assignment));
        }
        _assignments.erase(found);  // tasks may share a number; the first one gets the words
    }

    void collect(const MSPCXMLNode& task, const MSPCXMLNode& owner, const Asked& asked, const std::string& of) {
        for (const auto& [name, value] : owner.childElements()) {
            const auto detail = asked.find(name);
            if (detail == asked.end()) {
                continue;
            }
            const auto text = value.stringValue();
            const auto& [move, how] = detail->second;
            if (isLost(owner, value, text) && saysSomething(*how, text)) {
                _words[move].add(task, of + fmt::format(fmt::runtime(how->words), told(owner, *how, text)), {value});
            }
        }
    }

    // "Anna: "; empty for one that nobody has.
    std::string nameOfResource(const MSPCXMLNode& assignment) {
        if (_resourceNames.empty()) {
            for (const auto& of : _patient.items("Resources", "Resource")) {
                _resourceNames.try_emplace(MSPDITextIn(of, "UID").value_or(""), MSPDITextIn(of, "Name").value_or(""));
            }
        }
        const auto found = _resourceNames.find(MSPDITextIn(assignment, "ResourceUID").value_or(""));
        return found == _resourceNames.end() || found->second.empty() ? std::string() : found->second + ": ";
    }

    // A flag's own words hold no place for it.
    std::string told(const MSPCXMLNode& owner, const Detail& detail, const std::string& text) {
        switch (detail.telling) {
            case Telling::Flag:
            case Telling::FlagNotSet:
                return MSPDIIsTrue(text) ? "yes" : MSPDIIsOneOf(text, notSet) ? "no" : text;
            case Telling::Delay:
                return delayInWords(text, MSPDIIntegerIn(owner, "LevelingDelayFormat").value_or(0));
            case Telling::Work:
                return workInWords(text);
            case Telling::Contour:
                return contourInWords(text);
            case Telling::Calendar:
                return nameOfCalendar(text);
            case Telling::AsItIs:
                break;
        }
        return text;
    }

    std::string nameOfCalendar(const std::string& uid) {
        if (_calendarNames.empty()) {
            for (const auto& of : _patient.items("Calendars", "Calendar")) {
                _calendarNames.try_emplace(MSPDITextIn(of, "UID").value_or(""), MSPDITextIn(of, "Name").value_or(""));
            }
        }
        const auto found = _calendarNames.find(uid);
        const bool isNamed = found != _calendarNames.end() && !found->second.empty();
        return isNamed ? found->second : "calendar " + uid;
    }

    MSPDIPatient& _patient;
    Asked _asked;
    Asked _askedOfAssignments;
    std::map<std::string, std::vector<MSPCXMLNode>> _assignments;
    std::map<std::string, std::string> _resourceNames;
    std::map<const Move*, MSPDITaskWords> _words;
    std::map<std::string, std::string> _calendarNames;
};

}  // namespace

void MSPDIMendTaskDetails(MSPDIPatient& patient) {
    TaskDetails(patient).move();
}
