#include "MSPDIValueWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "KZDXWords.h"
#include "KZDXXMLFile.h"
#include "MSPCException.h"
#include "MSPCMessage.h"
#include "MSPCTextScanner.h"
#include "MSPIUtilities.h"

namespace {

constexpr std::size_t longestValue = 100;
constexpr std::size_t longestPath = 200;

// The end of the whole characters within the first `size` bytes.
std::size_t wholeCharacters(std::string_view text, std::size_t size) {
    auto end = std::min(text.size(), size);
    while (end < text.size() && end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return end;
}

std::string_view elementOf(std::string_view path) {
    const auto name = path.substr(path.rfind('/') + 1);
    return name.substr(0, name.find('['));
}

constexpr std::array<std::string_view, 8> constraints = {
    "as soon as possible",   "as late as possible", "must start on",          "must finish on",
    "start no earlier than", "start no later than", "finish no earlier than", "finish no later than"};

std::optional<MSPDIConstraint> constraintOf(std::string_view value) {
    const auto type = scanInteger64(value).value_or(-1);
    const bool isKnown = type >= 0 && type < static_cast<std::int64_t>(constraints.size());
    return isKnown ? std::optional(MSPDIConstraint{static_cast<std::size_t>(type)}) : std::nullopt;
}

// Only the one form of durations and dates that is written; what is odd about another is to be seen.
std::optional<MSPDIWork> durationOf(std::string_view value) {
    const auto end = value.find_first_not_of("0123456789HMS", 2);
    if (!value.starts_with("PT") || end != std::string_view::npos) {
        return std::nullopt;
    }
    try {
        return MSPDIWork{static_cast<double>(MSPIUtilities::mspdiDurationInSecs(value))};
    } catch (const MSPCException&) {
        return std::nullopt;
    }
}

// Lags are tenths of a minute, or percent.
MSPDIMeaning lagOf(std::string_view value, std::string_view format) {
    const auto number = KZDXNumber(value);
    const auto unit = scanInteger64(format).value_or(0);
    if (!number) {
        return {};
    }
    const bool isPercentage = unit == 19 || unit == 20 || unit == 51 || unit == 52;
    if (isPercentage) {
        return MSPDIPercentage{*number};
    }
    return MSPDIWork{static_cast<double>(MSPIUtilities::mspdiToMppLinkLag(value))};
}

MSPDIMeaning percentageOf(std::string_view fraction) {
    constexpr double percent = 100;
    const auto number = scanDouble(fraction) ? KZDXNumber(fraction) : std::nullopt;
    return number ? MSPDIMeaning(MSPDIPercentage{std::round(*number * percent * percent) / percent}) : MSPDIMeaning();
}

std::string inWords(const MSPDIConstraint& constraint) {
    return std::string(constraints.at(constraint.type));
}

std::string inWords(const MSPDIWork& work) {
    std::string words(work.seconds < 0 ? "-" : "");
    return words.append(KZDXShownWork(std::fabs(work.seconds)));
}

std::string inWords(const MSPDIPercentage& percentage) {
    return fmt::format("{:g}%", percentage.percent);
}

std::string inWords(const KZDXDateTime& date) {
    return KZDXShownDate(date, true);
}

// Who is meant by a number: "Dig (UID 4)", or "task 4" where no name is known.
std::string inWords(const MSPDITarget& target) {
    return target.name.empty() ? fmt::format("{} {}", target.kind, target.uid)
                               : fmt::format("{} (UID {})", target.name, target.uid);
}

std::string inWords(std::monostate /*nothing*/) {
    return {};
}

std::optional<MSPDITarget> targetOf(const MSPDIPlace& place) {
    if (!scanInteger64(place.targetUID)) {
        return std::nullopt;
    }
    const auto element = elementOf(place.path);
    const auto* const kind = element == "ResourceUID" ? "resource" : element == "CalendarUID" ? "calendar" : "task";
    return MSPDITarget{kind, place.targetUID, place.targetName};
}

// "2 days on the link to Dig (UID 4)".
std::string placeInWords(const MSPDIPlace& place) {
    const auto words = std::visit([](const auto& meaning) { return inWords(meaning); }, MSPDIMeaningOf(place));
    const auto link = MSPDILinkOf(place);
    return words.empty() || !link ? words : fmt::format("{} on the link to {}", words, inWords(*link));
}

}  // namespace

std::string MSPDIShownValue(std::string_view text) {
    const auto end = wholeCharacters(text, longestValue);
    return std::string(MSPCShownText(text.substr(0, end)).view()) + (end < text.size() ? "..." : "");
}

std::string MSPDIShownPath(std::string_view path) {
    if (path.size() <= longestPath) {
        return std::string(MSPCShownText(path).view());
    }
    auto rest = path.size() - longestPath / 2;
    while (rest < path.size() && (static_cast<unsigned char>(path[rest]) & 0xC0U) == 0x80U) {
        ++rest;
    }
    const auto beginning = path.substr(0, wholeCharacters(path, longestPath / 2));
    return std::string(MSPCShownText(beginning).view()) + "..." + std::string(MSPCShownText(path.substr(rest)).view());
}

std::optional<MSPDITarget> MSPDILinkOf(const MSPDIPlace& place) {
    return elementOf(place.path) == "LinkLag" ? targetOf(place) : std::nullopt;
}

MSPDIMeaning MSPDIMeaningOf(const MSPDIPlace& place) {
    const auto element = elementOf(place.path);
    if (element == "LinkLag") {
        return lagOf(place.value, place.unit);
    }
    if (element == "ConstraintType") {
        const auto constraint = constraintOf(place.value);
        return constraint ? MSPDIMeaning(*constraint) : MSPDIMeaning();
    }
    if (element == "Units") {  // only those of people's assignments are lost
        return percentageOf(place.value);
    }
    if (auto target = targetOf(place)) {
        return *std::move(target);
    }
    if (const auto work = durationOf(place.value)) {
        return *work;
    }
    const auto date = KZDXDateTimeFrom(place.value + "Z");
    return date ? MSPDIMeaning(*date) : MSPDIMeaning();
}

std::string MSPDIValueInWords(const MSPDIPlace& place) {
    const auto words = placeInWords(place);
    return MSPDIShownValue(words.empty() ? place.value : words);
}
