#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <span>

#include "MSPCTextScanner.h"
#include "MSPDIElementTable.h"
#include "MSPDIItemValues.h"
#include "MSPDIMendPasses.h"
#include "MSPDIPatient.h"
#include "MSPDITaskWords.h"
#include "MSPDIValues.h"

namespace {

// How a value is told. Flags are told by what they say: "yes", or words of their own.
enum class Telling { AsItIs, Flag, Delay, Calendar };

struct Detail {
    std::string_view name;   // of the element
    std::string_view words;  // "{}" stands for the value; a flag with words of its own is told by them where it is set
    Telling telling = Telling::AsItIs;
};

// A step, the name of the field that it makes, and the elements of a task that become its value.
struct Move {
    std::string_view step;
    std::string_view alias;
    std::span<const Detail> details;
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

constexpr Move moves[] = {
    {"hyperlink-to-field", "Hyperlink", hyperlink},
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
};

// The account of losses decides what a value that is not carried over says.
bool isLost(const MSPCXMLNode& task, const MSPCXMLNode& value, const std::string& text) {
    const auto* const element = MSPDIElementAt("Tasks/Task", value.name());
    if (element == nullptr || text.empty()) {
        return false;
    }
    const bool saysTheSame = value.name() == "WBS" && MSPDITextIn(task, "OutlineNumber") == text;
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

class TaskDetails {
public:
    explicit TaskDetails(MSPDIPatient& patient) : _patient(patient) {
        for (const auto& move : moves) {
            if (patient.isAskedFor(move.step)) {
                for (const auto& detail : move.details) {
                    _asked.emplace(detail.name, std::pair(&move, &detail));
                }
            }
        }
    }

    void move() {
        if (_asked.empty()) {
            return;
        }
        for (const auto& task : MSPDITasksWithFields(_patient)) {
            collect(task);
        }
        for (const auto& move : moves) {
            _words[&move].moveIntoField(_patient, move.step, move.alias);
        }
    }

private:
    void collect(const MSPCXMLNode& task) {
        for (const auto& [name, value] : task.childElements()) {
            const auto asked = _asked.find(name);
            if (asked == _asked.end()) {
                continue;
            }
            const auto text = value.stringValue();
            const auto& [move, detail] = asked->second;
            const bool isOwnWords = detail->telling == Telling::Flag && detail->words != "{}";
            if (isLost(task, value, text) && (!isOwnWords || MSPDIIsTrue(text))) {
                _words[move].add(task, fmt::format(fmt::runtime(detail->words), told(task, *detail, text)), {value});
            }
        }
    }

    // A flag's own words hold no place for it.
    std::string told(const MSPCXMLNode& task, const Detail& detail, const std::string& text) {
        switch (detail.telling) {
            case Telling::Flag:
                return MSPDIIsTrue(text) ? "yes" : MSPDIIsOneOf(text, "0|false|no") ? "no" : text;
            case Telling::Delay:
                return delayInWords(text, MSPDIIntegerIn(task, "LevelingDelayFormat").value_or(0));
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
    std::map<std::string_view, std::pair<const Move*, const Detail*>> _asked;
    std::map<const Move*, MSPDITaskWords> _words;
    std::map<std::string, std::string> _calendarNames;
};

}  // namespace

void MSPDIMendTaskDetails(MSPDIPatient& patient) {
    TaskDetails(patient).move();
}
