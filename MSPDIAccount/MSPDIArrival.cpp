#include "MSPDIArrival.h"

#include <algorithm>

#include "MSPCCharacters.h"
#include "MSPCPath.h"
#include "MSPCTextScanner.h"
#include "MSPCXMLLexis.h"
#include "MSPDIPlanFacts.h"
#include "MSPDIValues.h"
#include "MSPIAmounts.h"
#include "MSPIUtilities.h"

namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// Nearly all dates: in the one form that is written, on a day that every month has. Asking takes a fraction of a
// conversion.
bool isPlainDate(std::string_view text) {
    constexpr std::string_view form = "0000-19-39T29:59:59";  // the largest digit at each place, or any for 0 and 9
    if (text.size() != form.size()) {
        return false;
    }
    for (std::size_t index = 0; index < form.size(); ++index) {
        const bool fits = isDigit(form[index])
                              ? isDigit(text[index]) && (form[index] == '0' || text[index] <= form[index])
                              : text[index] == form[index];
        if (!fits) {
            return false;
        }
    }
    const auto month = text.substr(5, 2);
    const auto day = text.substr(8, 2);
    return month >= "01" && month <= "12" && day >= "01" && day <= "28" && text.substr(11, 2) <= "23";
}

void skipAll(std::string_view characters, std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
}

// ".0" behind whole seconds says nothing.
void skipNoFraction(std::string_view& text) {
    const auto end = text.starts_with(".0") ? text.find_first_not_of('0', 1) : std::string_view::npos;
    if (end != std::string_view::npos && text[end] == 'S') {
        text.remove_prefix(end);
    }
}

// Hours, minutes and whole seconds of so few digits that no number is too large, each at most once, behind no years,
// months and days: "PT8H0M0S", "P0DT8H", "PT8H0M0.0S".
bool isPlainDuration(std::string_view text) {
    constexpr std::size_t mostDigits = 9;
    if (!text.starts_with('P')) {
        return false;
    }
    text.remove_prefix(1);
    skipAll("0YMD", text);
    if (!text.starts_with('T')) {
        return false;
    }
    text.remove_prefix(1);
    bool hasAny = false;
    for (const char unit : {'H', 'M', 'S'}) {
        const auto digits =
            static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) - text.begin());
        auto behind = text.substr(digits);
        if (unit == 'S') {
            skipNoFraction(behind);
        }
        if (digits > 0 && digits <= mostDigits && behind.starts_with(unit)) {
            text = behind.substr(1);
            hasAny = true;
        }
    }
    return hasAny && text.empty();
}

MSPDIJudgement asAmount(std::string_view text, double (*meant)(double), std::string (*written)(double)) {
    const auto number = MSPDIWholeNumber(trimmed(text));
    const bool saysTheSame = number && scanDouble(written(*number)) == meant(*number);
    return saysTheSame ? MSPDIJudgement(MSPDIFate::Carried) : MSPDIJudgement(MSPDIFate::Changed, "rounded-amount");
}

double itself(double number) {
    return number;
}

}  // namespace

namespace MSPDIArrival {

MSPDIJudgement ofDate(const MSPDIPlanFacts& plan, std::string_view text) {
    // The document adds the offset where the plan names none.
    if (!isPlainDate(text) && !plan.kdzxDateOf(text).starts_with(trimmed(text))) {
        return {MSPDIFate::Changed, "odd-date"};
    }
    return plan.isSummerNow ? MSPDIJudgement(MSPDIFate::Changed, "summer-time") : MSPDIFate::Carried;
}

MSPDIJudgement ofDuration(std::string_view text) {
    if (isPlainDuration(text)) {
        return MSPDIFate::Carried;
    }
    const auto seconds = MSPDISeconds(text);
    const bool saysTheSame = seconds && MSPIUtilities::kdzxToMspdiDuration(std::to_string(*seconds)) == trimmed(text);
    return saysTheSame ? MSPDIJudgement(MSPDIFate::Carried) : MSPDIJudgement(MSPDIFate::Changed, "odd-duration");
}

MSPDIJudgement ofFixedCost(std::string_view text) {
    return asAmount(text, itself, MSPIAmounts::fixedCostText);
}

MSPDIJudgement ofCostPerUse(std::string_view text) {
    return asAmount(text, MSPIAmounts::costPerUse, MSPIAmounts::costPerUseText);
}

MSPDIJudgement ofUnits(std::string_view text) {
    return asAmount(text, itself, MSPIAmounts::unitsText);
}

MSPDIJudgement ofRate(std::string_view text) {
    const bool saysSomething = text.empty() || MSPDIWholeNumber(trimmed(text));
    return saysSomething ? MSPDIJudgement(MSPDIFate::Carried) : MSPDIJudgement(MSPDIFate::Changed, "rounded-amount");
}

bool isUnreadable(std::string_view text) {
    const auto isPlain = [](char byte) { return byte >= ' ' && byte <= '\x7E'; };
    while (!text.empty()) {
        const auto plain = std::find_if_not(text.begin(), text.end(), isPlain);
        text.remove_prefix(static_cast<std::size_t>(plain - text.begin()));
        if (text.empty()) {
            break;
        }
        const auto length = MSPCLengthOfCharacter(text);
        if (length == 0 || !MSPCXMLLexis::isCharacter(MSPCCharacterOfLength(text, length))) {
            return true;
        }
        text.remove_prefix(length);
    }
    return false;
}

}  // namespace MSPDIArrival
