#include "KZDXPageMarkup.h"

#include <fmt/format.h>

#include "KZDXWords.h"
#include "MSPCCharacters.h"

namespace {

// "1.2.3" for each row, counted as the rows come.
class Numbers {
public:
    // Of a depth that no person reads, the end: the rows would be longer than all that they tell.
    std::string next(std::size_t level) {
        constexpr std::size_t mostShown = 32;
        _counts.resize(level, 0);
        ++_counts.back();
        const auto hidden = _counts.size() - std::min(_counts.size(), mostShown);
        std::string text = hidden == 0 ? "" : "\u2026";
        for (auto place = hidden; place < _counts.size(); ++place) {
            text += fmt::format("{}{}", text.empty() ? "" : ".", _counts[place]);
        }
        return text;
    }

private:
    std::vector<std::size_t> _counts;
};

std::string dateOf(const MSPCXMLNode& task, std::string_view name) {
    const auto text = KZDXChildText(task, name).value_or("");
    const auto date = KZDXDateTimeFrom(text);
    return date ? fmt::format("{:04}-{:02}-{:02} {:02}:{:02}", date->fields.year, date->fields.month, date->fields.day,
                              date->fields.hour, date->fields.minute)
                : text;
}

std::string effortOf(const MSPCXMLNode& task) {
    const auto text = KZDXChildText(task, "effort").value_or("");
    const auto seconds = KZDXNumber(text);
    return seconds ? KZDXShownWork(*seconds) : text;
}

// A name for the table, which repeats it for each task: of one that is longer than any that people give, the beginning.
std::string briefName(std::string name) {
    constexpr std::size_t mostBytes = 200;
    if (name.size() <= mostBytes) {
        return name;
    }
    auto end = mostBytes;
    while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U) {  // within a character
        --end;
    }
    return name.substr(0, end) + "\u2026";
}

std::string resourcesOf(const KZDXScenario& scenario, const std::vector<std::size_t>& starts, std::size_t task) {
    std::string names;
    for (auto at = starts[task]; at < starts[task + 1]; ++at) {
        const auto& resource = scenario.assignments()[at].to;
        if (resource) {
            names += names.empty() ? "" : ", ";
            names += briefName(KZDXChildText(scenario.resources()[*resource].element, "name").value_or(""));
        }
    }
    return names;
}

std::string cell(std::string_view text) {
    return "<td>" + KZDXPageEscaped(text);
}

}  // namespace

std::string KZDXPageEscaped(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    while (!text.empty()) {
        const auto length = MSPCLengthOfCharacter(text);
        const auto byte = static_cast<unsigned char>(text.front());
        const bool isControl = length == 1 && (byte < 0x20U || byte == 0x7FU) && byte != '\n' && byte != '\t';
        switch (length == 0 || isControl ? '\0' : text.front()) {
            case '\0':
                escaped += "\xEF\xBF\xBD";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '&':
                escaped += "&amp;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += text.substr(0, length);
        }
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return escaped;
}

std::string KZDXPageTable(const KZDXPageOpenScenario& opened) {
    const auto& content = *opened.content;
    const auto& scenario = content.scenario;
    const auto starts = KZDXStarts(scenario.assignments(), scenario.tasks().size());
    std::string table =
        "<table><tr><th scope=col>Number<th scope=col>Title<th scope=col>Start<th scope=col>End<th scope=col>Effort"
        "<th scope=col>Done<th scope=col>Resources\n";
    Numbers numbers;
    for (const auto& row : content.rows) {
        const auto& task = scenario.tasks()[row.task].element;
        const auto done = KZDXChildText(task, "completion-percentage");
        table += "<tr>" + cell(numbers.next(row.level)) + cell(content.outline.name(row.task)) +
                 cell(dateOf(task, "start-date")) + cell(dateOf(task, "end-date")) + cell(effortOf(task)) +
                 cell(done ? KZDXShownPercentage(*done) : std::string()) +
                 cell(resourcesOf(scenario, starts, row.task)) + "\n";
    }
    return table + "</table>";
}
