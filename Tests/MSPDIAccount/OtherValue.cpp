#include "OtherValue.h"

#include "ChangedPlan.h"
#include "MSPCTextScanner.h"

namespace {

bool isDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string withHour(const std::string& time, std::size_t at) {
    return time.substr(0, at) + (time.substr(at, 2) == "17" ? "18" : "17") + time.substr(at + 2);
}

std::string withMinute(const std::string& time, std::size_t at) {
    return time.substr(0, at) + (time.substr(at, 2) == "15" ? "45" : "15") + time.substr(at + 2);
}

bool isDateTime(std::string_view value) {
    return value.size() > 15 && value[4] == '-' && value[10] == 'T';
}

std::vector<std::string> otherDateTimes(const std::string& value, bool isOfCalendar) {
    const auto number = scanInteger64(value).value_or(0);
    const auto day = value.substr(8, 2) == "10" ? "11" : "10";
    std::vector<std::string> others{std::to_string(number + 1) + value.substr(4),
                                    value.substr(0, 8) + day + value.substr(10)};
    if (!isOfCalendar) {  // exceptions go by days
        others.push_back(withHour(value, 11));
        others.push_back(withMinute(value, 14));
    }
    return others;
}

// With another number of hours, and with other minutes.
std::vector<std::string> otherDurations(const std::string& value) {
    const auto hours = scanInteger64(std::string_view(value).substr(2)).value_or(0);
    const auto other = "PT" + std::to_string(hours + 1);
    const auto rest = value.find('H');
    return {other + (rest == std::string::npos ? "H0M0S" : value.substr(rest)), other + "H13M0S"};
}

// The one that most values of its kind have.
std::string otherValue(const ChangedPlan& plan, const std::string& path, const std::string& value) {
    const auto element = withoutNumbers(path);
    const auto name = element.substr(element.rfind('/') + 1);
    const auto number = scanInteger64(value).value_or(0);
    const auto otherOf = [&](const std::string& at) {
        for (const auto& other : plan.valuesAt(at)) {
            if (other != value && isDigits(other)) {
                return other;
            }
        }
        return std::to_string(number + 1);
    };
    if (element == "Tasks/Task/PredecessorLink/PredecessorUID") {
        return otherOf("Tasks/Task/UID");
    }
    if (element == "Assignments/Assignment/ResourceUID") {
        return otherOf("Resources/Resource/UID");
    }
    if (element == "Tasks/Task/PredecessorLink/Type" || name == "CurrencySymbolPosition") {
        return std::to_string((number + 1) % 4);
    }
    if (name == "WorkFormat") {
        return "3";
    }
    if (name == "CurrencyDigits") {
        return std::to_string(number == 0 ? 2 : number - 1);
    }
    if (name.starts_with("Percent")) {
        return std::to_string(number == 100 ? 99 : number + 1);
    }
    if (isDigits(value)) {
        return std::to_string(number + 1);
    }
    if (scanDouble(value) && value.find_first_not_of("0123456789.") == std::string::npos) {
        return std::to_string(*scanDouble(value) + 1);
    }
    return value + "x";
}

}  // namespace

std::vector<std::string> otherValues(const ChangedPlan& plan, const std::string& path, const std::string& value) {
    if (isDateTime(value)) {
        return otherDateTimes(value, path.starts_with("/Project/Calendars"));
    }
    if (value.starts_with("PT")) {
        return otherDurations(value);
    }
    if (value.size() == 8 && value[2] == ':') {
        return {withHour(value, 0), withMinute(value, 3)};
    }
    return {otherValue(plan, path, value)};
}
