#include "KZDXPageTasks.h"

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <set>

#include "KZDXXMLFile.h"

namespace {

using JSON = KZDXPageJSON;

// Child elements that have columns of their own, or are told by the rows and links.
constexpr std::array<std::string_view, 18> toldElsewhere = {"title",
                                                            "type",
                                                            "split",
                                                            "start-date",
                                                            "end-date",
                                                            "effort",
                                                            "effort-done",
                                                            "completion-percentage",
                                                            "leveled-start",
                                                            "locked-start-date",
                                                            "locked-end-date",
                                                            "start-constraint-date",
                                                            "end-constraint-date",
                                                            "note",
                                                            "user-data",
                                                            "child-task",
                                                            "prerequisite-task",
                                                            "assignment"};
constexpr std::array<std::string_view, 7> dateNames = {"start-date",         "end-date",        "leveled-start",
                                                       "locked-start-date",  "locked-end-date", "start-constraint-date",
                                                       "end-constraint-date"};
constexpr std::array<std::string_view, 3> numberNames = {"effort", "effort-done", "completion-percentage"};

using Columns = std::map<std::string, std::vector<JSON>, std::less<>>;

std::vector<JSON>& columnNamed(Columns& columns, std::string_view name, std::size_t rows) {
    auto found = columns.find(name);
    if (found == columns.end()) {
        found = columns.emplace(name, std::vector<JSON>(rows)).first;
    }
    return found->second;
}

std::string_view kindOf(const MSPCXMLNode& task) {
    if (task.firstChildElement("split")) {
        return "split";
    }
    const auto type = KZDXChildText(task, "type");
    for (const std::string_view known : {"group", "milestone", "task"}) {
        if (type == known) {
            return known;
        }
    }
    return "task";
}

std::optional<KZDXDateTime> dateOf(const MSPCXMLNode& task, std::string_view name) {
    const auto text = KZDXChildText(task, name);
    return text ? KZDXDateTimeFrom(*text) : std::nullopt;
}

JSON numberOf(const MSPCXMLNode& task, std::string_view name) {
    const auto text = KZDXChildText(task, name);
    const auto number = text ? KZDXNumber(*text) : std::nullopt;
    if (!number) {
        return nullptr;
    }
    const bool isWhole = *number == std::floor(*number) && std::fabs(*number) < 9e15;
    return isWhole ? JSON(static_cast<std::int64_t>(*number)) : JSON(*number);
}

JSON piecesOf(const KZDXPageScenario& scenario, const KZDXPageRow& row) {
    if (row.pieces.empty()) {
        return nullptr;
    }
    auto pieces = JSON::array();
    for (const auto piece : row.pieces) {
        const auto& element = scenario.scenario.tasks()[piece].element;
        pieces.push_back({KZDXPageDate(dateOf(element, "start-date")), KZDXPageDate(dateOf(element, "end-date")),
                          numberOf(element, "effort")});
    }
    return pieces;
}

void put(JSON& object, const std::string& name, JSON column) {
    if (!column.is_null()) {
        object[name] = std::move(column);
    }
}

// The values of one child element, or of another part of a task, for all rows.
JSON columnOf(const KZDXPageScenario& scenario, const std::function<JSON(const MSPCXMLNode&)>& valueOf) {
    std::vector<JSON> values;
    values.reserve(scenario.rows.size());
    for (const auto& row : scenario.rows) {
        values.push_back(valueOf(scenario.scenario.tasks()[row.task].element));
    }
    return KZDXPageColumn(values);
}

JSON dateColumnOf(const KZDXPageScenario& scenario, std::string_view name) {
    std::vector<std::optional<KZDXDateTime>> dates;
    dates.reserve(scenario.rows.size());
    for (const auto& row : scenario.rows) {
        dates.push_back(dateOf(scenario.scenario.tasks()[row.task].element, name));
    }
    return KZDXPageDateColumn(dates);
}

JSON textOrNull(const std::optional<std::string>& text) {
    return text ? JSON(*text) : JSON(nullptr);
}

JSON assignedOf(const KZDXPageScenario& scenario) {
    const auto& assignments = scenario.scenario.assignments();
    const auto starts = KZDXStarts(assignments, scenario.scenario.tasks().size());
    std::vector<JSON> assigned;
    for (const auto& row : scenario.rows) {
        auto resources = JSON::array();
        for (auto at = starts[row.task]; at < starts[row.task + 1]; ++at) {
            if (assignments[at].to) {
                resources.push_back(*assignments[at].to);
            }
        }
        assigned.push_back(resources.empty() ? JSON(nullptr) : std::move(resources));
    }
    return KZDXPageColumn(assigned);
}

// Values that are no dates or numbers although they should be are told as they stand.
bool isTold(const MSPCXMLNode& task, std::string_view name) {
    if (std::find(dateNames.begin(), dateNames.end(), name) != dateNames.end()) {
        return dateOf(task, name).has_value();
    }
    if (std::find(numberNames.begin(), numberNames.end(), name) != numberNames.end()) {
        return !numberOf(task, name).is_null();
    }
    if (name == "type") {
        return KZDXChildText(task, name) == kindOf(task);
    }
    return std::find(toldElsewhere.begin(), toldElsewhere.end(), name) != toldElsewhere.end();
}

JSON pairsOf(const Columns& columns) {
    auto pairs = JSON::array();
    for (const auto& [name, values] : columns) {
        pairs.push_back({name, KZDXPageColumn(values)});
    }
    return pairs;
}

// The child elements of tasks that hold more than the rest of the page tells, found for all tasks at once.
std::set<MSPCXMLNode> unusualElements(const MSPCXMLNode& root) {
    const auto found = root.nodesForXPath(
        "task/*[@*[name() != 'idref' and name() != 'kind'] or ((self::assignment or self::prerequisite-task) and *)]");
    return found ? std::set<MSPCXMLNode>(found->begin(), found->end()) : std::set<MSPCXMLNode>();
}

// Of several of one name each has its line.
void addLine(JSON& told, const std::string& line) {
    told = told.is_null() ? line : told.get<std::string>() + "\n" + line;
}

// Attributes that tasks of this program do not have, others perhaps do.
void addAttributes(const KZDXPageScenario& scenario, Columns& columns) {
    std::map<MSPCXMLNode, std::size_t> rowOf;
    const auto attributes = scenario.scenario.root().nodesForXPath("task/@*[name() != 'id']");
    if (!attributes || attributes->empty()) {
        return;
    }
    for (std::size_t row = 0; row < scenario.rows.size(); ++row) {
        rowOf[scenario.scenario.tasks()[scenario.rows[row].task].element] = row;
    }
    for (const auto& attribute : *attributes) {
        const auto row = rowOf.find(attribute.parent());
        if (row != rowOf.end()) {
            addLine(columnNamed(columns, attribute.name(), scenario.rows.size())[row->second], attribute.stringValue());
        }
    }
}

// [name, column] for each child element that has no column of its own.
JSON factsOf(const KZDXPageScenario& scenario) {
    Columns columns;
    const auto unusual = unusualElements(scenario.scenario.root());
    for (std::size_t row = 0; row < scenario.rows.size(); ++row) {
        const auto& task = scenario.scenario.tasks()[scenario.rows[row].task].element;
        for (auto child = KZDXElementFrom(task.firstChild()); child; child = KZDXElementFrom(child.nextSibling())) {
            const bool isUnusual = unusual.contains(child);
            if (isUnusual || !isTold(task, child.name())) {
                addLine(columnNamed(columns, child.name(), scenario.rows.size())[row],
                        isUnusual ? child.markup() : KZDXPageContent(child));
            }
        }
    }
    addAttributes(scenario, columns);
    return pairsOf(columns);
}

// [name, column] for each custom field.
JSON fieldsOf(const KZDXPageScenario& scenario) {
    Columns columns;
    for (std::size_t row = 0; row < scenario.rows.size(); ++row) {
        for (const auto& [name, value] : KZDXPageFields(scenario.scenario.tasks()[scenario.rows[row].task].element)) {
            columnNamed(columns, name, scenario.rows.size())[row] = value;
        }
    }
    return pairsOf(columns);
}

}  // namespace

KZDXPageScenario::KZDXPageScenario(const MSPCXMLNode& root)
    : scenario(root),
      outline(scenario.tasks(), scenario.childTasks(), "title", scenario.topTask()),
      rows(outline, scenario.tasks()) {
}

std::optional<std::string> KZDXPageNote(const MSPCXMLNode& item) {
    const auto note = item.firstChildElement("note");
    if (!note) {
        return std::nullopt;
    }
    std::string text;
    const auto paragraphs = note.firstChildElement("text");
    for (auto paragraph = paragraphs.firstChildElement("p"); paragraph; paragraph = paragraph.nextSiblingElement("p")) {
        text += text.empty() ? "" : "\n";
        for (auto run = paragraph.firstChildElement("run"); run; run = run.nextSiblingElement("run")) {
            text += KZDXChildText(run, "lit").value_or("");
        }
    }
    return text.empty() ? note.stringValue() : text;
}

std::string KZDXPageContent(const MSPCXMLNode& element) {
    const bool isPlain = !KZDXElementFrom(element.firstChild());
    auto text = isPlain ? element.stringValue() : std::string();
    return text.empty() ? element.markup() : text;
}

std::vector<std::pair<std::string, std::string>> KZDXPageFields(const MSPCXMLNode& item) {
    std::vector<std::pair<std::string, std::string>> fields;
    const auto data = item.firstChildElement("user-data");
    std::optional<std::string> key;
    for (auto child = KZDXElementFrom(data.firstChild()); child; child = KZDXElementFrom(child.nextSibling())) {
        if (child.name() == "key") {
            key = child.stringValue();
        } else if (key) {
            if (child.name() != "null") {
                fields.emplace_back(std::move(*key), child.stringValue());
            }
            key.reset();
        }
    }
    return fields;
}

JSON KZDXPageTasks(const KZDXPageScenario& scenario) {
    JSON tasks = {{"count", scenario.rows.size()}, {"outside", scenario.rows.firstOutside()}};
    std::vector<JSON> levels;
    std::vector<JSON> pieces;
    for (const auto& row : scenario.rows) {
        levels.emplace_back(row.level);
        pieces.push_back(piecesOf(scenario, row));
    }
    put(tasks, "level", KZDXPageColumn(levels));
    put(tasks, "pieces", KZDXPageColumn(pieces));
    put(tasks, "id", columnOf(scenario, [](const MSPCXMLNode& task) {
            const auto id = KZDXAttribute(task, "id");
            return id ? JSON(*id) : JSON(nullptr);
        }));
    put(tasks, "title", columnOf(scenario, [](const auto& task) { return textOrNull(KZDXChildText(task, "title")); }));
    put(tasks, "kind", columnOf(scenario, [](const auto& task) { return JSON(kindOf(task)); }));
    for (const auto name : dateNames) {
        put(tasks, std::string(name), dateColumnOf(scenario, name));
    }
    for (const auto name : numberNames) {
        put(tasks, std::string(name), columnOf(scenario, [name](const auto& task) { return numberOf(task, name); }));
    }
    put(tasks, "note", columnOf(scenario, [](const auto& task) { return textOrNull(KZDXPageNote(task)); }));
    put(tasks, "assigned", assignedOf(scenario));
    tasks["facts"] = factsOf(scenario);
    tasks["fields"] = fieldsOf(scenario);
    return tasks;
}

JSON KZDXPageLinks(const KZDXPageScenario& scenario) {
    constexpr std::array<std::string_view, 4> kinds = {"FF", "FS", "SF", "SS"};
    auto from = JSON::array();
    auto to = JSON::array();
    std::string kind;
    for (const auto& link : scenario.scenario.links()) {
        const auto before = link.to ? scenario.rows.rowOf(*link.to) : std::nullopt;
        const auto after = scenario.rows.rowOf(link.from);
        if (before && after) {
            const auto* const found =
                std::find(kinds.begin(), kinds.end(), KZDXAttribute(link.element, "kind").value_or(""));
            from.push_back(*before);
            to.push_back(*after);
            kind += static_cast<char>('0' + (found - kinds.begin()));
        }
    }
    return {{"from", std::move(from)}, {"to", std::move(to)}, {"kind", kind}};
}

JSON KZDXPageBaselineTasks(const KZDXPageScenario& baseline, const KZDXPageScenario& actual) {
    std::vector<JSON> rows;
    std::vector<JSON> pieces;
    auto gone = JSON::array();
    for (const auto& row : baseline.rows) {
        const auto id = baseline.scenario.tasks()[row.task].id;
        const auto task = actual.scenario.tasks().find(id);
        const auto actualRow = task ? actual.rows.rowOf(*task) : std::nullopt;
        rows.push_back(actualRow ? JSON(*actualRow) : JSON(-1));
        pieces.push_back(piecesOf(baseline, row));
        if (!actualRow) {
            gone.push_back({std::string(id), baseline.outline.name(row.task)});
        }
    }
    JSON tasks = {{"count", baseline.rows.size()}, {"gone", std::move(gone)}};
    const bool isSame =
        rows.size() == actual.rows.size() &&
        std::all_of(rows.begin(), rows.end(), [at = 0](const JSON& row) mutable { return row == at++; });
    if (!isSame) {
        tasks["row"] = rows;
    }
    put(tasks, "pieces", KZDXPageColumn(pieces));
    put(tasks, "start-date", dateColumnOf(baseline, "start-date"));
    put(tasks, "end-date", dateColumnOf(baseline, "end-date"));
    put(tasks, "effort", columnOf(baseline, [](const auto& task) { return numberOf(task, "effort"); }));
    return tasks;
}
