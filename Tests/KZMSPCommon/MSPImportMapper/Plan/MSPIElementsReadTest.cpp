#include "MSPIElementsRead.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A name that a mapper asks for and the loader drops would be missing from every large plan, and nobody would be told.
// So the sources are searched for what they ask for.

namespace fs = std::filesystem;

namespace {

using Selections = std::vector<const MSPCXMLSelection*>;

// Capitalised texts of the sources that are no names of elements in a plan.
const std::set<std::string> otherTexts = {
    "FF", "FS",    "Group", "KDZX", "KZMSPDIFilter", "KZMSPDIFilterDump", "MSPDI", "Material", "Overtime", "PT", "SF",
    "SS", "Staff", "USD",   "Z"};

// What the variables of the mappers stand for, so that a name is looked for where it is asked for.
const std::map<std::string, std::string> elementsOfVariables = {
    {"mspProject", "Project"},
    {"_project", "Project"},
    {"mspTask", "Project/Tasks/Task"},
    {"fields", "Project/Tasks/Task"},
    {"link", "Project/Tasks/Task/PredecessorLink"},
    {"mspResource", "Project/Resources/Resource"},
    {"mspAssignment", "Project/Assignments/Assignment"},
    {"assignment", "Project/Assignments/Assignment"},
    {"record", "Project/Assignments/Assignment/TimephasedData"},
    {"mspCalendar", "Project/Calendars/Calendar"},
    {"calendar", "Project/Calendars/Calendar"},
    {"weekDay", "Project/Calendars/Calendar/WeekDays/WeekDay"},
    {"exception", "Project/Calendars/Calendar/Exceptions/Exception"},
    {"timePeriod", "Project/Calendars/Calendar/Exceptions/Exception/TimePeriod"},
    {"definition", "Project/ExtendedAttributes/ExtendedAttribute"},
};

std::string withoutComments(const std::string& source) {
    static const std::regex comment("(^|\\s)//[^\\n]*");
    return std::regex_replace(source, comment, "$1");
}

// The mappers' sources by file name, without comments.
const std::map<std::string, std::string>& sources() {
    static const auto texts = [] {
        std::map<std::string, std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(KZMSP_MAPPER_SOURCES)) {
            const auto name = entry.path().filename().string();
            const auto extension = entry.path().extension();
            if ((extension == ".cpp" || extension == ".h") && !name.starts_with("MSPIElementsRead")) {
                std::ifstream file(entry.path());
                found[name] = withoutComments({std::istreambuf_iterator<char>(file), {}});
            }
        }
        return found;
    }();
    return texts;
}

void forEachMatch(const std::string& text, const std::regex& pattern,
                  const std::function<void(const std::smatch&)>& visit) {
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
        visit(*match);
    }
}

void addAll(const MSPCXMLSelection& selection, Selections& all) {
    all.push_back(&selection);
    for (const auto& name : selection.childNames()) {
        addAll(*selection.child(name), all);
    }
}

const Selections& allSelections() {
    static const auto all = [] {
        Selections found;
        addAll(MSPIElementsRead(), found);
        return found;
    }();
    return all;
}

Selections childrenNamed(const Selections& parents, const std::string& name) {
    Selections children;
    for (const auto* parent : parents) {
        if (const auto* child = parent->child(name)) {
            children.push_back(child);
        }
    }
    return children;
}

// Whether a selection keeps what a query such as "WeekDays/WeekDay[DayType>=1]" reads below one of some elements.
bool keeps(Selections from, const std::string& query) {
    static const std::regex step("/?/?([A-Za-z]+)(\\[[^\\]]*\\])?");
    static const std::regex conditionName("(^|[^'A-Za-z])([A-Z][A-Za-z]*)");
    from = query.starts_with("//") ? allSelections() : from;
    bool isKept = true;
    forEachMatch(query, step, [&](const std::smatch& match) {
        from = childrenNamed(from, match[1]);
        isKept = isKept && !from.empty();
        forEachMatch(match[2].str(), conditionName, [&](const std::smatch& condition) {
            isKept = isKept && !childrenNamed(from, condition[2]).empty();
        });
    });
    return isKept;
}

// A capitalised name, or a path of such names with conditions.
const std::string queryPattern = R"re("((?://)?[A-Z][A-Za-z]*(?:\[[^"\]]*\])?(?:/[A-Z][A-Za-z]*(?:\[[^"\]]*\])?)*)")re";

std::vector<std::string> queriesIn(const std::string& source) {
    static const std::regex pattern(queryPattern);
    std::vector<std::string> queries;
    forEachMatch(source, pattern, [&](const std::smatch& match) { queries.push_back(match[1]); });
    return queries;
}

// The variable and the query of each read whose variable is written at it.
std::vector<std::pair<std::string, std::string>> readsIn(const std::string& source) {
    static const std::regex ofNodes("ForXQuery\\(\\s*(\\w+),\\s*" + queryPattern);
    static const std::regex ofFields(
        "(\\w+)\\.(?:stringValue|intValue|floatValue|boolValue|singleObject|nodes|"
        "firstChildElement)\\(\\s*" +
        queryPattern);
    std::vector<std::pair<std::string, std::string>> reads;
    for (const auto* pattern : {&ofNodes, &ofFields}) {
        forEachMatch(source, *pattern, [&](const std::smatch& match) { reads.emplace_back(match[1], match[2]); });
    }
    return reads;
}

}  // namespace

TEST(MSPIElementsRead, keepsEveryNameThatAMapperAsksFor) {
    std::size_t count = 0;
    for (const auto& [file, source] : sources()) {
        for (const auto& query : queriesIn(source)) {
            if (!otherTexts.contains(query)) {
                EXPECT_TRUE(keeps(allSelections(), query))
                    << file << " reads \"" << query << "\", which no element of MSPIElementsRead has below it";
                ++count;
            }
        }
    }
    EXPECT_GT(count, 80U);
}

TEST(MSPIElementsRead, keepsEachNameWhereItIsAskedFor) {
    std::size_t count = 0;
    for (const auto& [file, source] : sources()) {
        for (const auto& [variable, query] : readsIn(source)) {
            const auto element = elementsOfVariables.find(variable);
            if (element != elementsOfVariables.end()) {
                EXPECT_TRUE(keeps({&MSPIElementsRead()}, element->second + "/" + query))
                    << file << " reads \"" << query << "\" of " << element->second;
                ++count;
            }
        }
    }
    EXPECT_GT(count, 60U);
}

TEST(MSPIElementsRead, namesNothingThatNobodyAsksFor) {
    std::string asked;
    for (const auto& [file, source] : sources()) {
        for (const auto& query : queriesIn(source)) {
            asked.append(" ").append(std::regex_replace(query, std::regex("[^A-Za-z]+"), " ")).append(" ");
        }
    }
    // Their dates count for the first and the last date of all calendars.
    asked += " WorkWeeks WorkWeek ";
    for (const auto* selection : allSelections()) {
        for (const auto& name : selection->childNames()) {
            EXPECT_NE((asked + " Project ").find(" " + name + " "), std::string::npos) << name << " is read by nobody";
        }
    }
}

TEST(MSPIElementsReadTest, findsQueriesAndReadsInASource) {
    EXPECT_EQ(queriesIn("f(\"Name\"); g(\"Tasks/Task[UID=1]/UID\", \"text\", \"Two words\", \"//FromDate\")"),
              (std::vector<std::string>{"Name", "Tasks/Task[UID=1]/UID", "//FromDate"}));
    EXPECT_EQ(readsIn("intValueForXQuery(link, \"Type\", &error); task.nodes(\"Notes\"); x(\"Y\")"),
              (std::vector<std::pair<std::string, std::string>>{{"link", "Type"}, {"task", "Notes"}}));
    EXPECT_EQ(withoutComments("a // b \"Name\"\nc \"//d\""), "a \nc \"//d\"");
}

TEST(MSPIElementsReadTest, missesWhatIsNotKept) {
    const auto selection = MSPCXMLSelection::fromText("Plan(Days(Day(Type From)) Name)");
    const Selections plan = {selection.child("Plan")};
    EXPECT_TRUE(keeps(plan, "Name"));
    EXPECT_TRUE(keeps(plan, "Days/Day[Type>=1 and From='X']/From"));
    for (const char* query : {"Nam", "From", "Days/Name", "Day", "Days/Day[To=1]", "Days/Day[Type=1]/To", "Name/Day"}) {
        EXPECT_FALSE(keeps(plan, query)) << query;
    }
}
