#include "OtherValue.h"

#include "ChangedPlan.h"
#include "MSPCTextScanner.h"

namespace {

bool isDigits(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

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
    if (value.size() > 10 && value[4] == '-' && value[10] == 'T') {
        return std::to_string(number + 1) + value.substr(4);  // a year later
    }
    if (value.starts_with("PT")) {
        const auto hours = scanInteger64(std::string_view(value).substr(2)).value_or(0);
        const auto rest = value.find('H');
        return "PT" + std::to_string(hours + 1) + (rest == std::string::npos ? "H0M0S" : value.substr(rest));
    }
    if (value.size() == 8 && value[2] == ':') {
        return value.substr(0, 3) + (value.substr(3, 2) == "17" ? "18" : "17") + value.substr(5);
    }
    if (isDigits(value)) {
        return std::to_string(number + 1);
    }
    if (scanDouble(value) && value.find_first_not_of("0123456789.") == std::string::npos) {
        return std::to_string(*scanDouble(value) + 1);
    }
    return value + "x";
}
