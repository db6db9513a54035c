#include "KZDXDiff.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "KZDXMatch.h"
#include "KZDXRelations.h"
#include "KZDXReordered.h"
#include "KZDXValues.h"
#include "KZDXWords.h"

namespace {

const KZDXEntry* entryFor(const KZDXContents& contents, const std::string& scenario) {
    if (!scenario.empty()) {
        return contents.entryNamed(scenario);
    }
    const auto* const actual = contents.entryNamed(KZDXActualScenario);
    return actual != nullptr || contents.entries().empty() ? actual : &contents.entries().front();
}

// The comparison of two open documents.
class Comparison {
public:
    Comparison(const KZDXOpenDocument& old, const KZDXOpenDocument& now, const KZDXDiffOptions& options)
        : _old(old),
          _now(now),
          _options(options),
          _oldTasks(old.scenario().tasks(), old.scenario().childTasks(), "title", old.scenario().topTask()),
          _newTasks(now.scenario().tasks(), now.scenario().childTasks(), "title", now.scenario().topTask()),
          _oldResources(old.scenario().resources(), old.scenario().childResources(), "name",
                        old.scenario().topResource()),
          _newResources(now.scenario().resources(), now.scenario().childResources(), "name",
                        now.scenario().topResource()),
          _tasks(_oldTasks, _newTasks),
          _resources(_oldResources, _newResources) {}

    KZDXDifferences differences() {
        compareScenarios();
        compareProjects();
        tellRenumbered("resource", _resources.renumbered());
        tellRenumbered("task", _tasks.renumbered());
        compareItems("resource", _oldResources, _newResources, _resources);
        compareItems("task", _oldTasks, _newTasks, _tasks);
        tellOffsets();
        return std::move(_differences);
    }

private:
    void add(std::string_view kind, std::string_view subject, std::string what, std::string before = {},
             std::string after = {}) {
        _differences.push_back({kind, subject, {}, {}, std::move(what), std::move(before), std::move(after)});
    }

    void compareScenarios() {
        if (!_options.comparesScenarios || !_options.comparesContents) {
            return;
        }
        for (const auto& entry : _old.contents().entries()) {
            if (_now.contents().entryNamed(entry.name) == nullptr) {
                add("gone", "scenario", fmt::format("the scenario {} is gone", KZDXQuoted(entry.name)),
                    std::string(entry.name));
            }
        }
        for (const auto& entry : _now.contents().entries()) {
            if (_old.contents().entryNamed(entry.name) == nullptr) {
                add("new", "scenario", fmt::format("the scenario {} is new", KZDXQuoted(entry.name)), "",
                    std::string(entry.name));
            }
        }
    }

    void compareProjects() {
        if (_options.comparesContents) {
            compareSettings();
        }
        const auto tell = [this](std::string_view kind, std::string what, std::string before, std::string after) {
            add(kind, "project", std::move(what), std::move(before), std::move(after));
        };
        _values.compare(_old.scenario().root(), _now.scenario().root(), tell);
        const auto before = KZDXAttribute(_old.scenario().root(), "fixed-end").value_or("no");
        const auto after = KZDXAttribute(_now.scenario().root(), "fixed-end").value_or("no");
        if (before != after) {
            add("setting", "project",
                after == "yes" ? "is scheduled from its end now" : "is scheduled from its start now",
                std::string(before), std::string(after));
        }
    }

    void compareSettings() {
        compareSetting("title");
        compareSetting("currency-format");
        for (const std::string_view unit : {"day", "week", "month", "year"}) {
            compareHours(unit);
        }
    }

    void compareSetting(std::string_view name) {
        const auto before = KZDXChildText(_old.contents().project(), name).value_or("");
        const auto after = KZDXChildText(_now.contents().project(), name).value_or("");
        if (before != after && (name != "title" || _options.comparesTitles)) {
            const auto words = name == "currency-format" ? "currency format" : name;
            add("setting", "project", fmt::format("{} {}", words, KZDXQuotedChange(before, after)), before, after);
        }
    }

    // Durations and effort are counted in the same hours most often; one line tells both then.
    void compareHours(std::string_view unit) {
        const auto name = fmt::format("hours-per-{}", unit);
        const auto hoursOf = [&name](const KZDXOpenDocument& document, std::string_view format) {
            return KZDXAttribute(document.contents().project().firstChildElement(format), name).value_or("");
        };
        const std::pair duration(hoursOf(_old, "duration-format"), hoursOf(_now, "duration-format"));
        const std::pair effort(hoursOf(_old, "effort-format"), hoursOf(_now, "effort-format"));
        if (duration == effort) {
            tellHours(fmt::format("a {} has", unit), duration.first, duration.second);
        } else {
            tellHours(fmt::format("a {} of duration has", unit), duration.first, duration.second);
            tellHours(fmt::format("a {} of effort has", unit), effort.first, effort.second);
        }
    }

    void tellHours(const std::string& words, std::string_view before, std::string_view after) {
        const auto shown = [](std::string_view hours) {
            return hours.empty() ? std::string("no number of") : KZDXShortened(hours);
        };
        if (before != after) {
            add("setting", "project", fmt::format("{} {} hours, had {}", words, shown(after), shown(before)),
                std::string(before), std::string(after));
        }
    }

    void tellRenumbered(std::string_view subject, std::size_t count) {
        if (count > 0) {
            add("ids", subject,
                fmt::format("{} {}{} got another id: matched by outline and name", count, subject,
                            count == 1 ? "" : "s"));
        }
    }

    void tellOffsets() {
        if (const auto count = _values.offsets(); count > 0) {
            add("offset", "project",
                fmt::format("{} date{} differ{} in the offset from Greenwich alone", count, count == 1 ? "" : "s",
                            count == 1 ? "s" : ""));
        }
    }

    void compareItems(std::string_view subject, const KZDXOutline& old, const KZDXOutline& now,
                      const KZDXMatch& match) {
        const auto isReordered = KZDXReordered(old, now, match);
        for (std::size_t item = 0; item < now.size(); ++item) {
            if (const auto before = match.oldOf(item)) {
                compareItem(subject, old, *before, now, item, match, isReordered[item]);
            } else {
                tellItem("new", subject, now, item);
            }
        }
        for (std::size_t item = 0; item < old.size(); ++item) {
            if (!match.newOf(item)) {
                tellItem("gone", subject, old, item);
            }
        }
    }

    // Where an item is, for people: "Building (t1)".
    static std::string placeOf(const KZDXOutline& outline, std::size_t item) {
        const auto parent = outline.parent(item);
        if (!parent) {
            return "outside the outline";
        }
        return parent == outline.top() ? "the top level" : KZDXNamed(outline.name(*parent), outline.id(*parent));
    }

    // The same behind "is new" or "was": "in Building (t1)".
    static std::string locationOf(const KZDXOutline& outline, std::size_t item) {
        const auto parent = outline.parent(item);
        const std::string_view preposition = !parent ? "" : parent == outline.top() ? "at " : "in ";
        return fmt::format("{}{}", preposition, placeOf(outline, item));
    }

    void tellItem(std::string_view kind, std::string_view subject, const KZDXOutline& outline, std::size_t item) {
        const bool hasPlace = subject == "task" && !outline.isPiece(item);
        auto what = std::string(kind == "new" ? "is new" : "is gone");
        if (hasPlace) {
            what += fmt::format(", {}{}", kind == "new" ? "" : "was ", locationOf(outline, item));
        }
        _differences.push_back({kind, subject, std::string(outline.id(item)), outline.shownName(item), std::move(what),
                                kind == "gone" ? outline.name(item) : std::string(),
                                kind == "new" ? outline.name(item) : std::string()});
    }

    // The new name stands in front of it, as far as it can be shown.
    static std::string wordsOfRenaming(const std::string& before, const std::string& after) {
        return KZDXShortened(after) == after ? fmt::format("renamed, was {}", KZDXQuoted(before))
                                             : fmt::format("renamed, {}", KZDXQuotedChange(before, after));
    }

    void compareItem(std::string_view subject, const KZDXOutline& old, std::size_t before, const KZDXOutline& now,
                     std::size_t after, const KZDXMatch& match, bool isReordered) {
        const auto tell = [&](std::string_view kind, std::string what, std::string valueBefore,
                              std::string valueAfter) {
            _differences.push_back({kind, subject, std::string(now.id(after)), now.shownName(after), std::move(what),
                                    std::move(valueBefore), std::move(valueAfter)});
        };
        if (old.name(before) != now.name(after) && !now.isPiece(after)) {
            tell("renamed", wordsOfRenaming(old.name(before), now.name(after)), old.name(before), now.name(after));
        }
        compareGroups(old, before, now, after, match, isReordered, tell);
        _values.compare(old.items()[before].element, now.items()[after].element, tell);
        if (subject == "task") {
            KZDXCompareRelations({_old.scenario(), _now.scenario(), _oldTasks, _newTasks, _oldResources, _newResources,
                                  _tasks, _resources, _starts},
                                 before, after, tell);
        }
    }

    static void compareGroups(const KZDXOutline& old, std::size_t before, const KZDXOutline& now, std::size_t after,
                              const KZDXMatch& match, bool isReordered, const KZDXTellValue& tell) {
        const auto oldParent = old.parent(before);
        const auto newParent = now.parent(after);
        const auto expected = oldParent ? match.newOf(*oldParent) : std::nullopt;
        if (oldParent.has_value() != newParent.has_value() || expected != newParent) {
            const auto from = placeOf(old, before);
            const auto to = placeOf(now, after);
            tell("moved", fmt::format("moved from {} to {}", from, to), from, to);
        } else if (isReordered) {
            const auto place = now.place(after);
            const auto siblings = now.children(*newParent);
            const auto where =
                place == 0 ? std::string("first") : fmt::format("after {}", now.shownName(siblings[place - 1]));
            tell("moved", fmt::format("moved within its group, now {}", where), "", where);
        }
    }

    const KZDXOpenDocument& _old;
    const KZDXOpenDocument& _now;
    KZDXDiffOptions _options;
    KZDXOutline _oldTasks;
    KZDXOutline _newTasks;
    KZDXOutline _oldResources;
    KZDXOutline _newResources;
    KZDXMatch _tasks;
    KZDXMatch _resources;
    KZDXRelationStarts _starts{_old.scenario(), _now.scenario()};
    KZDXValueComparison _values;
    KZDXDifferences _differences;
};

}  // namespace

std::optional<KZDXOpenDocument> KZDXOpenDocument::open(KZDXFiles& files, const std::string& scenario,
                                                       std::string& failure) {
    const auto names = files.names(failure);
    if (!names) {
        return std::nullopt;
    }
    if (!std::binary_search(names->begin(), names->end(), KZDXContentsName)) {
        failure = fmt::format("no bundle: it holds no {}", KZDXContentsName);
        return std::nullopt;
    }
    auto contentsFile = KZDXXMLFile::readFrom(files, std::string(KZDXContentsName), failure);
    if (!contentsFile) {
        return std::nullopt;
    }
    KZDXOpenDocument document;
    document._contents = std::make_shared<const KZDXContents>(std::move(*contentsFile));
    return document.another(files, scenario, failure);
}

std::optional<KZDXOpenDocument> KZDXOpenDocument::another(KZDXFiles& files, const std::string& scenario,
                                                          std::string& failure) const {
    const auto* const entry = entryFor(*_contents, scenario);
    if (entry == nullptr || !entry->staysInBundle()) {
        failure = scenario.empty() ? "it has no scenario" : fmt::format("it has no scenario '{}'", scenario);
        return std::nullopt;
    }
    auto file = KZDXXMLFile::readFrom(files, std::string(entry->filename), failure);
    if (!file) {
        return std::nullopt;
    }
    KZDXOpenDocument document;
    document._contents = _contents;
    document._file = std::make_unique<KZDXXMLFile>(std::move(*file));
    document._scenario = std::make_unique<KZDXScenario>(document._file->root());
    document._scenarioName = entry->name;
    return document;
}

KZDXDifferences KZDXDiff(const KZDXOpenDocument& old, const KZDXOpenDocument& now, const KZDXDiffOptions& options) {
    return Comparison(old, now, options).differences();
}

std::vector<KZDXDifferenceKind> KZDXDifferenceKinds() {
    return {{"new", "A task, a resource or a scenario is new"},
            {"gone", "A task, a resource or a scenario is gone"},
            {"renamed", "A task or a resource has another name"},
            {"moved", "A task is in another group, or at another place of its group"},
            {"ids", "Ids were given anew: tasks or resources were matched by outline and name"},
            {"type", "A task becomes a group, a milestone, a split task or none of them"},
            {"date", "A start, an end or a bound of them"},
            {"effort", "Effort, or the duration of a piece of a split task"},
            {"completion", "Completion, or effort done"},
            {"scenario", "Another scenario differs"},
            {"link", "A task waits for another one, no longer, or in another way"},
            {"assignment", "A resource is assigned, or no longer"},
            {"note", "A note"},
            {"field", "A custom field"},
            {"cost", "A cost"},
            {"calendar", "Working times, time off or overtime"},
            {"setting", "A setting of the project: its title, formats, direction of scheduling"},
            {"offset", "Dates whose clock or instant is the same differ in their offset from Greenwich"},
            {"other", "Anything else: priority, units, e-mail address, ..."}};
}
