#include "MSPDIValueWords.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "KZDXDateTime.h"
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

std::string constraintInWords(std::string_view value) {
    const auto type = scanInteger64(value).value_or(-1);
    const bool isKnown = type >= 0 && type < static_cast<std::int64_t>(constraints.size());
    return isKnown ? std::string(constraints[static_cast<std::size_t>(type)]) : std::string();
}

// Only the one form of durations and dates that is written; what is odd about another is to be seen.
std::string durationInWords(std::string_view value) {
    const auto end = value.find_first_not_of("0123456789HMS", 2);
    if (!value.starts_with("PT") || end != std::string_view::npos) {
        return {};
    }
    try {
        return KZDXShownWork(static_cast<double>(MSPIUtilities::mspdiDurationInSecs(value)));
    } catch (const MSPCException&) {
        return {};
    }
}

std::string dateInWords(std::string_view value) {
    const auto date = KZDXDateTimeFrom(std::string(value) + "Z");
    return date ? KZDXShownDate(*date, true) : std::string();
}

// Lags are tenths of a minute, or percent.
std::string lagInWords(std::string_view value, std::string_view format) {
    const auto number = KZDXNumber(value);
    const auto unit = scanInteger64(format).value_or(0);
    if (!number) {
        return {};
    }
    const bool isPercentage = unit == 19 || unit == 20 || unit == 51 || unit == 52;
    if (isPercentage) {
        return fmt::format("{:g}%", *number);
    }
    const auto seconds = MSPIUtilities::mspdiToMppLinkLag(value);
    std::string words(seconds < 0 ? "-" : "");
    return words.append(KZDXShownWork(seconds < 0 ? -seconds : seconds));
}

// Who is meant by a number: "Dig (UID 4)", or "task 4" where no name is known.
std::string targetInWords(std::string_view element, const MSPDIPlace& place) {
    if (!scanInteger64(place.targetUID)) {
        return {};
    }
    if (!place.targetName.empty()) {
        return fmt::format("{} (UID {})", place.targetName, place.targetUID);
    }
    const auto* const kind = element == "ResourceUID" ? "resource" : element == "CalendarUID" ? "calendar" : "task";
    return fmt::format("{} {}", kind, place.targetUID);
}

// "2 days on the link to Dig (UID 4)".
std::string lagOfLinkInWords(const MSPDIPlace& place) {
    const auto lag = lagInWords(place.value, place.unit);
    const auto target = targetInWords("PredecessorUID", place);
    return lag.empty() || target.empty() ? lag : fmt::format("{} on the link to {}", lag, target);
}

std::string inWords(const MSPDIPlace& place) {
    const auto element = elementOf(place.path);
    if (element == "LinkLag") {
        return lagOfLinkInWords(place);
    }
    if (element == "ConstraintType") {
        return constraintInWords(place.value);
    }
    if (element == "Units") {  // only those of people's assignments are lost
        return scanDouble(place.value) ? KZDXShownPercentage(place.value) : std::string();
    }
    if (auto words = targetInWords(element, place); !words.empty()) {
        return words;
    }
    auto words = durationInWords(place.value);
    return words.empty() ? dateInWords(place.value) : words;
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

std::string MSPDIValueInWords(const MSPDIPlace& place) {
    const auto words = inWords(place);
    return MSPDIShownValue(words.empty() ? place.value : words);
}
