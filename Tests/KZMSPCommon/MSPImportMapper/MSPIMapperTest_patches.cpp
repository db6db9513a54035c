#include "MSPIMapper.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "ProjectImport.h"

// All baselines of one plan, shown one after the other from one index: whatever the elements look like, the plan is
// afterwards what it was.

namespace {

constexpr int baselineCount = 11;

// What elements and their baselines can look like, each with a name of its own. `Notes` is a field that any baseline
// may replace; the values of numbers 0 and 1 tell which one shows.
const std::map<std::string, std::string> shapes = {
    {"complete", "<Notes>actual</Notes>" + baseline(0, "<Notes>zero</Notes>") + baseline(1, "<Notes>one</Notes>")},
    {"missing", "<Notes>actual</Notes>" + baseline(0, "<Notes>zero</Notes>")},
    {"none at all", "<Notes>actual</Notes>"},
    {"partial",
     "<Notes>actual</Notes><Cost>1</Cost>" + baseline(0, "<Cost>5</Cost>") + baseline(1, "<Notes>one</Notes>")},
    {"without values", "<Notes>actual</Notes>" + baseline(0) + baseline(1)},
    {"other names", "<Notes>actual</Notes>" + baseline(1, "<BCWS>7</BCWS><SV>8</SV>")},
    {"names in another order", "<Notes>a</Notes><Cost>1</Cost>" + baseline(0, "<Cost>5</Cost><Notes>zero</Notes>") +
                                   baseline(1, "<Notes>one</Notes><Cost>6</Cost>")},
    {"a name twice", "<Notes>first</Notes><Notes>actual</Notes>" + baseline(1, "<Notes>one</Notes>")},
    {"a name twice in the baseline", "<Notes>actual</Notes>" + baseline(1, "<Notes>first</Notes><Notes>one</Notes>")},
    {"a name twice in both", "<Notes>first</Notes><Notes>actual</Notes>" +
                                 baseline(1, "<Notes>first</Notes><Notes>one</Notes>") +
                                 baseline(1, "<Notes>last</Notes>")},
    {"a number twice",
     "<Notes>actual</Notes>" + baseline(1, "<Notes>first</Notes>") + baseline(1, "<Notes>one</Notes>")},
    {"a number in another form", "<Notes>actual</Notes><Baseline><Number> 01.0 </Number><Notes>one</Notes></Baseline>"},
    {"two numbers",
     "<Notes>actual</Notes><Baseline><Number>0</Number><Number>1</Number><Notes>both</Notes></Baseline>"},
    {"no number", "<Notes>actual</Notes><Baseline><Notes>lost</Notes></Baseline>"},
    {"elements in a value", "<Notes>actual</Notes>" + baseline(1, "<Notes>o<b>n</b>e</Notes>")},
    {"elements in a field", "<Notes>ac<b>tu</b>al</Notes>" + baseline(1, "<Notes>one</Notes>")},
    {"empty values",
     "<Notes>actual</Notes><Cost/>" + baseline(0, "<Notes/><Cost>5</Cost>") + baseline(1, "<Notes></Notes>")},
    {"a baseline before the fields", baseline(1, "<Notes>one</Notes>") + "<Notes>actual</Notes>"},
    {"a baseline in the baseline",
     "<Notes>actual</Notes>" + baseline(1, "<Notes>one</Notes>" + baseline(1, "<Notes>deep</Notes>"))},
};

// A plan with a task, a resource and an assignment of each shape.
std::string planOfAllShapes() {
    std::string tasksOfPlan;
    std::string resources;
    std::string assignments;
    int uid = 0;
    for (const auto& [name, content] : shapes) {
        ++uid;
        const auto number = std::to_string(uid);
        tasksOfPlan += task(uid, "<Name>" + name + "</Name>" + content);
        resources +=
            "<Resource><UID>" + number + "</UID><Name>" + name + "</Name><Type>1</Type>" + content + "</Resource>";
        assignments += "<Assignment><UID>" + number + "</UID><TaskUID>" + number + "</TaskUID><ResourceUID>" + number +
                       "</ResourceUID>" + content + "</Assignment>";
    }
    const auto plan =
        tasks(tasksOfPlan) + "<Resources>" + resources + "</Resources><Assignments>" + assignments + "</Assignments>";
    return framed(plan);
}

// The mappings of one plan after the other, each with the same scenario id.
class PatchedImport : public ProjectImport {
public:
    PatchedImport() : ProjectImport(planOfAllShapes()) {}
    ~PatchedImport() { log.ignoreLines(); }

    std::string mapped(int number) {
        randomSource = ListedRandomSource{0x0100000000000000};
        return mapBaseline(number);
    }
};

TEST(MSPIMapperPatches, LeaveThePlanAsItWasAndMapWhatANewPlanGives) {
    PatchedImport import;
    const auto before = import.plan.document().serialized();
    for (int round = 0; round < 2; ++round) {
        for (int number = 0; number < baselineCount; ++number) {
            const auto scenario = import.mapped(number);
            EXPECT_EQ(scenario, PatchedImport().mapped(number)) << number;
            EXPECT_EQ(scenario == "(none)", number > 1);
            EXPECT_EQ(import.plan.document().serialized(), before) << number;
        }
    }
}

TEST(MSPIMapperPatches, ShowTheValuesOfTheBaselineAndNothingElse) {
    PatchedImport import;
    const struct {
        int number;
        const char* shape;
        const char* notes;  // what task and resource show; none where they have left the plan
    } table[] = {
        {0, "complete", "zero"},
        {1, "complete", "one"},
        {0, "missing", "zero"},
        {1, "missing", nullptr},
        {0, "none at all", nullptr},
        {1, "none at all", nullptr},
        {0, "partial", "actual"},
        {1, "partial", "one"},
        {1, "without values", "actual"},
        {0, "other names", nullptr},
        {1, "other names", "actual"},
        {0, "names in another order", "zero"},
        {1, "names in another order", "one"},
        {1, "a name twice", "one"},
        {1, "a name twice in the baseline", "one"},
        {1, "a name twice in both", "last"},
        {1, "a number twice", "one"},
        {1, "a number in another form", "one"},
        {0, "two numbers", "both"},
        {1, "two numbers", "both"},
        {0, "no number", nullptr},
        {1, "elements in a value", "one"},
        {1, "elements in a field", "one"},
        {1, "a baseline before the fields", "one"},
        {1, "a baseline in the baseline", "one"},
    };
    const std::map<int, std::string> scenarios = {{0, import.mapped(0)}, {1, import.mapped(1)}};
    for (const auto& [number, shape, notes] : table) {
        SCOPED_TRACE(std::to_string(number) + ": " + shape);
        const auto scenario = documentFromXML(scenarios.at(number));
        for (const std::string kind : {"task", "resource"}) {
            const auto nameOf = kind == "task" ? "title" : "name";
            const auto found = scenario.root().nodesForXPath(kind + "[" + nameOf + "='" + shape + "']/note");
            const auto shown = found && found->size() == 1 ? found->front().stringValue() : "(none)";
            EXPECT_EQ(shown, notes ? notes : "(none)") << kind;
        }
    }
}

}  // namespace
