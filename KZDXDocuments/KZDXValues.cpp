#include "KZDXValues.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <vector>

#include "KZDXSchedules.h"
#include "KZDXWords.h"
#include "KZDXXMLFile.h"

namespace {

enum class Form { Date, Work, Percentage, Number, Word, Text, Note, Fields, Schedule, Type };

struct Value {
    std::string_view element;
    std::string_view kind;
    std::string_view words;
    Form form;
};

// By name, so that they can be looked up. What is absent of work and completion is 0.
constexpr std::array<Value, 24> values = {{
    {"completion-percentage", "completion", "completion", Form::Percentage},
    {"cost-per-hour", "cost", "cost per hour", Form::Number},
    {"cost-per-use", "cost", "cost per use", Form::Number},
    {"duration", "effort", "duration", Form::Work},
    {"effort", "effort", "effort", Form::Work},
    {"effort-done", "completion", "effort done", Form::Work},
    {"email-address", "other", "e-mail address", Form::Text},
    {"end-constraint-date", "date", "latest end", Form::Date},
    {"end-date", "date", "end", Form::Date},
    {"granularity", "setting", "granularity", Form::Word},
    {"leveled-start", "date", "start after leveling", Form::Date},
    {"locked-end-date", "date", "locked end", Form::Date},
    {"locked-start-date", "date", "locked start", Form::Date},
    {"note", "note", "note", Form::Note},
    {"priority", "other", "priority", Form::Number},
    {"recalculate", "other", "what is recalculated", Form::Word},
    {"schedule", "calendar", "working times", Form::Schedule},
    {"schedule-type", "other", "scheduling", Form::Word},
    {"start-constraint-date", "date", "earliest start", Form::Date},
    {"start-date", "date", "start", Form::Date},
    {"static-cost", "cost", "fixed cost", Form::Number},
    {"type", "type", "type", Form::Type},
    {"units-available", "other", "units", Form::Number},
    {"user-data", "field", "", Form::Fields},
}};
static_assert(std::is_sorted(values.begin(), values.end(),
                             [](const Value& one, const Value& other) { return one.element < other.element; }));

const Value* valueNamed(std::string_view element) {
    const auto* const found =
        std::lower_bound(values.begin(), values.end(), element,
                         [](const Value& value, std::string_view name) { return value.element < name; });
    return found != values.end() && found->element == element ? found : nullptr;
}

// What the comparison of the outline, of links and of assignments looks at, and what is no matter of one task.
bool isComparedElsewhere(std::string_view element) {
    constexpr std::array<std::string_view, 11> names = {
        "assignment", "child-resource", "child-task", "name",         "prerequisite-task", "resource",
        "split",      "task",           "title",      "top-resource", "top-task"};
    return std::binary_search(names.begin(), names.end(), element);
}

struct Child {
    std::string_view name;
    MSPCXMLNode element;
};

// What the differences are told by: a start before its end.
bool comesBefore(std::string_view one, std::string_view other) {
    const bool isStart = one == "start-date";
    const bool isOtherStart = other == "start-date";
    return isStart != isOtherStart ? isStart : one < other;
}

// The children by name; the order among them says nothing.
std::vector<Child> childrenOf(const MSPCXMLNode& element) {
    constexpr std::size_t usual = 16;
    std::vector<Child> children;
    children.reserve(usual);
    for (auto child = KZDXElementFrom(element.firstChild()); child; child = KZDXElementFrom(child.nextSibling())) {
        if (!isComparedElsewhere(child.name())) {
            children.push_back({child.name(), child});
        }
    }
    std::stable_sort(children.begin(), children.end(),
                     [](const Child& one, const Child& other) { return comesBefore(one.name, other.name); });
    return children;
}

// The paragraphs of a note, one a line.
std::string textOfNote(const MSPCXMLNode& note) {
    std::string text;
    const auto paragraphs = note.firstChildElement("text");
    for (auto paragraph = paragraphs.firstChildElement("p"); paragraph; paragraph = paragraph.nextSiblingElement("p")) {
        text.append(text.empty() ? "" : "\n").append(paragraph.stringValue());
    }
    return text;
}

using Fields = std::map<std::string, std::string>;

Fields fieldsOf(const MSPCXMLNode& userData) {
    Fields fields;
    for (auto key = userData.firstChildElement("key"); key; key = key.nextSiblingElement("key")) {
        const auto value = KZDXElementFrom(key.nextSibling());
        fields[key.stringValue()] = value.name() == "string" ? value.stringValue() : std::string();
    }
    return fields;
}

// The key of a field that is new and has a value; each is given once.
using KeysByValue = std::multimap<std::string_view, std::string_view>;

KeysByValue newKeysByValue(const Fields& before, const Fields& after) {
    KeysByValue keys;
    for (const auto& [key, value] : after) {
        if (!value.empty() && !before.contains(key)) {
            keys.emplace(value, key);
        }
    }
    return keys;
}

// A field that is gone while a new one has its value got another name.
void compareFields(const MSPCXMLNode& old, const MSPCXMLNode& now, const KZDXTellValue& tell) {
    const auto before = fieldsOf(old);
    const auto after = fieldsOf(now);
    auto renamed = newKeysByValue(before, after);
    std::set<std::string_view> told;
    for (const auto& [key, value] : before) {
        const auto found = after.find(key);
        if (found != after.end()) {
            if (found->second != value) {
                tell("field", fmt::format("{} {}", KZDXShortened(key), KZDXQuotedChange(value, found->second)), value,
                     found->second);
            }
        } else if (const auto other = renamed.find(value); other != renamed.end()) {
            tell("field",
                 fmt::format("{} is called {} now, still {}", KZDXShortened(key), KZDXShortened(other->second),
                             KZDXQuoted(value)),
                 key, std::string(other->second));
            told.insert(other->second);
            renamed.erase(other);
        } else {
            tell("field", fmt::format("{} is gone, was {}", KZDXShortened(key), KZDXQuoted(value)), value, "");
        }
    }
    for (const auto& [key, value] : after) {
        if (!before.contains(key) && !told.contains(key)) {
            tell("field", fmt::format("{} is {} now", KZDXShortened(key), KZDXQuoted(value)), "", value);
        }
    }
}

void compareTexts(const Value& value, const std::string& before, const std::string& after, const KZDXTellValue& tell) {
    std::string what;
    if (before.empty()) {
        what = fmt::format("{} is new: {}", value.words, KZDXQuoted(after));
    } else if (after.empty()) {
        what = fmt::format("{} is gone, was {}", value.words, KZDXQuoted(before));
    } else {
        what = fmt::format("{} {}", value.words, KZDXQuotedChange(before, after));
    }
    tell(value.kind, std::move(what), before, after);
}

// What a document says in abbreviations.
std::string wordOf(std::string_view word) {
    return word == "asap"   ? "as soon as possible"
           : word == "alap" ? "as late as possible"
           : word.empty()   ? "none"
                            : KZDXQuoted(word);
}

void compareWords(const Value& value, const std::string& before, const std::string& after, const KZDXTellValue& tell) {
    tell(value.kind, fmt::format("{} {} -> {}", value.words, wordOf(before), wordOf(after)), before, after);
}

// Numbers that are written differently are the same.
bool areSameNumbers(std::string_view one, std::string_view other) {
    const auto first = KZDXNumber(one);
    return first && first == KZDXNumber(other);
}

void compareNumbers(const Value& value, const std::string& before, const std::string& after,
                    const KZDXTellValue& tell) {
    if (areSameNumbers(before, after)) {
        return;
    }
    const auto shown = [](const std::string& text) {
        const auto number = KZDXNumber(text);
        return text.empty() ? std::string("none") : number ? fmt::format("{}", *number) : KZDXQuoted(text);
    };
    tell(value.kind, fmt::format("{} {} -> {}", value.words, shown(before), shown(after)), before, after);
}

void compareWork(const Value& value, const std::string& before, const std::string& after, const KZDXTellValue& tell) {
    const auto old = before.empty() ? 0.0 : KZDXNumber(before);
    const auto now = after.empty() ? 0.0 : KZDXNumber(after);
    if (!old || !now) {
        compareTexts(value, before, after, tell);
    } else if (*old != *now) {
        tell(value.kind,
             fmt::format("{} {} {}, {} -> {}", value.words, KZDXShownWork(*now - *old), *now > *old ? "more" : "less",
                         KZDXShownWork(*old), KZDXShownWork(*now)),
             before, after);
    }
}

void comparePercentages(const Value& value, const std::string& before, const std::string& after,
                        const KZDXTellValue& tell) {
    const std::string old = before.empty() ? "0" : before;
    const std::string now = after.empty() ? "0" : after;
    if (!areSameNumbers(old, now)) {
        tell(value.kind, fmt::format("{} {} -> {}", value.words, KZDXShownPercentage(old), KZDXShownPercentage(now)),
             before, after);
    }
}

// A split task has no type.
std::string wordsOfType(const std::string& type) {
    if (type.empty()) {
        return "a split task";
    }
    return type == "group"       ? "a group"
           : type == "milestone" ? "a milestone"
           : type == "task"      ? "a task"
                                 : KZDXQuoted(type);
}

void compareTypes(const Value& value, const std::string& before, const std::string& after, const KZDXTellValue& tell) {
    tell(value.kind, fmt::format("becomes {}, was {}", wordsOfType(after), wordsOfType(before)), before, after);
}

}  // namespace

void KZDXValueComparison::compare(const MSPCXMLNode& old, const MSPCXMLNode& now, const KZDXTellValue& tell) {
    const auto before = childrenOf(old);
    const auto after = childrenOf(now);
    auto one = before.begin();
    auto other = after.begin();
    while (one != before.end() || other != after.end()) {
        const bool hasOld = one != before.end() && (other == after.end() || !comesBefore(other->name, one->name));
        const bool hasNew = other != after.end() && (one == before.end() || !comesBefore(one->name, other->name));
        compareChild(hasOld ? one->name : other->name, hasOld ? one->element : MSPCXMLNode(),
                     hasNew ? other->element : MSPCXMLNode(), tell);
        one += hasOld ? 1 : 0;
        other += hasNew ? 1 : 0;
    }
}

void KZDXValueComparison::compareChild(std::string_view name, const MSPCXMLNode& old, const MSPCXMLNode& now,
                                       const KZDXTellValue& tell) {
    const auto* const value = valueNamed(name);
    if (value == nullptr) {
        const auto before = old ? old.markup() : std::string();
        const auto after = now ? now.markup() : std::string();
        if (before != after) {
            tell("other", fmt::format("'{}' has changed", KZDXShortened(name)), before, after);
        }
        return;
    }
    if (value->form == Form::Fields) {
        compareFields(old, now, tell);
        return;
    }
    if (value->form == Form::Schedule) {
        KZDXCompareSchedules(old, now, tell);
        return;
    }
    if (value->form != Form::Note && old && now && old.stringValue(_before) == now.stringValue(_after)) {
        return;
    }
    const auto textOf = [value](const MSPCXMLNode& element) {
        return value->form == Form::Note ? textOfNote(element) : element ? element.stringValue() : std::string();
    };
    const auto before = textOf(old);
    const auto after = textOf(now);
    if (before == after) {
        return;
    }
    switch (value->form) {
        case Form::Date: {
            const auto verb = name == "start-date" ? "starts" : name == "end-date" ? "ends" : "";
            compareDates(value->kind, value->words, verb, before, after, tell);
            break;
        }
        case Form::Work:
            compareWork(*value, before, after, tell);
            break;
        case Form::Percentage:
            comparePercentages(*value, before, after, tell);
            break;
        case Form::Number:
            compareNumbers(*value, before, after, tell);
            break;
        case Form::Word:
            compareWords(*value, before, after, tell);
            break;
        case Form::Type:
            compareTypes(*value, before, after, tell);
            break;
        default:
            compareTexts(*value, before, after, tell);
    }
}

void KZDXValueComparison::compareDates(std::string_view kind, std::string_view words, std::string_view verb,
                                       const std::string& before, const std::string& after, const KZDXTellValue& tell) {
    const auto old = KZDXDateTimeFrom(before);
    const auto now = KZDXDateTimeFrom(after);
    const auto shown = [](const std::optional<KZDXDateTime>& date, const std::string& text, bool withYear) {
        return date ? KZDXShownDate(*date, withYear) : KZDXQuoted(text);
    };
    if (old && now && (old->wallClock == now->wallClock || old->instant() == now->instant())) {
        ++_offsets;
        return;
    }
    if (before.empty() || after.empty()) {
        tell(kind,
             before.empty() ? fmt::format("{} is new: {}", words, shown(now, after, true))
                            : fmt::format("{} is gone, was {}", words, shown(old, before, true)),
             before, after);
        return;
    }
    const bool withYear = old && now && old->fields.year != now->fields.year;
    const auto change = fmt::format("{} -> {}", shown(old, before, withYear), shown(now, after, withYear));
    if (!old || !now) {
        tell(kind, fmt::format("{} {}", words, change), before, after);
        return;
    }
    const auto difference = now->wallClock - old->wallClock;
    tell(kind,
         fmt::format("{} {} {}, {}", verb.empty() ? words : verb, KZDXShownTime(difference),
                     difference > 0 ? "later" : "earlier", change),
         before, after);
}
