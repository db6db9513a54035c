#include "MSPDIValues.h"

#include <array>
#include <functional>
#include <string>

#include "MSPCError.h"
#include "MSPCException.h"
#include "MSPCPath.h"
#include "MSPCTextScanner.h"
#include "MSPIUtilities.h"

namespace {

bool isNothingOfADuration(std::string_view text) {
    return text.starts_with("PT") && text.find_first_not_of("PTHMS0.") == std::string_view::npos;
}

bool isSame(std::string_view text, std::string_view wanted) {
    if (text == wanted) {
        return true;
    }
    const auto number = MSPDIWholeNumber(text);
    if (number && number == MSPDIWholeNumber(wanted)) {
        return true;
    }
    if (wanted == "0" && (isNothingOfADuration(text) || lowerCased(text) == "false")) {
        return true;
    }
    return wanted == "1" && lowerCased(text) == "true";
}

std::optional<std::int64_t> secondsOf(std::string_view duration) {
    try {
        return MSPIUtilities::mspdiDurationInSecs(duration);
    } catch (const MSPCException&) {
        return std::nullopt;
    }
}

// A task's durations are asked for by several of its leaves, and many tasks have the same ones. Those with a sign or a
// fraction take a hundred times as long to read as to be looked up here.
class DurationsAskedFor {
public:
    std::optional<std::int64_t> secondsOf(std::string_view duration) {
        auto& entry = _entries.at(std::hash<std::string_view>()(duration) % _entries.size());
        if (!entry.isKnown || entry.duration != duration) {
            entry.duration = duration;
            entry.seconds = ::secondsOf(duration);
            entry.isKnown = true;
        }
        return entry.seconds;
    }

private:
    struct Entry {
        bool isKnown = false;
        std::string duration;
        std::optional<std::int64_t> seconds;
    };
    std::array<Entry, 256> _entries;
};

}  // namespace

std::optional<std::int64_t> MSPDISingleInteger(const MSPCFields& fields, std::string_view name) {
    Error error;
    const auto text = fields.text(name, &error);
    return text && !error ? scanInteger64(text.textOrEmpty()) : std::nullopt;
}

std::optional<std::int64_t> MSPDISingleInteger(const MSPCXMLLastChild& child) {
    std::string buffer;
    return child.count == 1 ? scanInteger64(child.element.stringValue(buffer)) : std::nullopt;
}

std::optional<std::int64_t> MSPDILastInteger(const MSPCFields& fields, std::string_view name) {
    return scanInteger64(fields.text(name).textOrEmpty());
}

bool MSPDIIsTrue(std::string_view text) {
    const auto value = trimmed(text);
    if (value.size() == 1) {
        return value != "0" && scanInteger32(value).value_or(0) != 0;
    }
    const auto word = lowerCased(value);
    return word == "true" || word == "yes" || scanInteger32(value).value_or(0) != 0;
}

bool MSPDIIsTrueField(const MSPCFields& fields, std::string_view name) {
    return MSPDIIsTrue(fields.text(name).textOrEmpty());
}

std::optional<std::int64_t> MSPDISeconds(std::string_view duration) {
    constexpr std::size_t longestKept = 32;
    thread_local DurationsAskedFor asked;
    return duration.size() <= longestKept ? asked.secondsOf(duration) : secondsOf(duration);
}

std::optional<double> MSPDIWholeNumber(std::string_view text) {
    const bool isNumber = !text.empty() && text.find_first_not_of("0123456789.-+eE") == std::string_view::npos;
    return isNumber ? scanDouble(text) : std::nullopt;
}

bool MSPDIIsOneOf(std::string_view text, std::string_view list) {
    const auto value = trimmed(text);
    for (;;) {
        const auto end = std::min(list.find('|'), list.size());
        if (isSame(value, list.substr(0, end))) {
            return true;
        }
        if (end == list.size()) {
            return false;
        }
        list.remove_prefix(end + 1);
    }
}
