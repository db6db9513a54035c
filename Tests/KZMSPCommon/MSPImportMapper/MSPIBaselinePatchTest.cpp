#include "MSPIBaselinePatch.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <string>
#include <vector>

#include "ExpectRaises.h"
#include "MSPCExtensions.h"
#include "MappingFixture.h"

namespace {

// A patch with all that it needs, of the element's baseline that the plain query finds.
class PatchOf {
public:
    PatchOf(const MSPCXMLNode& element, std::int32_t number)
        : _patch(targetOf(element, singleObjectForXQuery(element, "Baseline[Number=" + std::to_string(number) + "]")),
                 _journal) {}
    PatchOf(const PatchOf&) = delete;
    PatchOf& operator=(const PatchOf&) = delete;
    MSPIBaselinePatch* operator->() { return &_patch; }

private:
    MSPIBaselineIndex::Target targetOf(const MSPCXMLNode& element, const MSPCXMLNode& baseline) {
        return baseline ? MSPIBaselineIndex::Target{element, true, _values.append(MSPCFields(element), baseline)}
                        : MSPIBaselineIndex::Target{element, false, {}};
    }

    MSPIBaselineValues _values;
    MSPIBaselineJournal _journal;
    MSPIBaselinePatch _patch;
};

constexpr std::string_view missing = "(removed)";

std::string markupOfChildren(const MSPCXMLNode& element) {
    auto markup = markupOf(element.newCopyOf(element));
    const auto start = markup.find('>') + 1;
    return markup.ends_with("/>") ? "" : markup.substr(start, markup.rfind("</") - start);
}

// The same without what is in numbered baselines: while one shows, plain values have changed places with the children
// they stand for, and nobody looks into it.
std::string withoutBaselineContent(std::string markup) {
    constexpr std::string_view opening = "<Baseline>";
    for (auto start = markup.find(opening); start != std::string::npos; start = markup.find(opening, start + 1)) {
        const auto content = start + opening.size();
        const auto end = markup.find("</Baseline>", content);
        if (markup.substr(content, end - content).find("<Number>") != std::string::npos) {
            markup.erase(content, end - content);
        }
    }
    return markup;
}

struct PatchCase {
    std::string what;
    std::string task;     // the task's children
    std::string patched;  // what they are while baseline 1 shows; `missing` where the task is gone
};

// The names of the behaviours are the tests' names.
class MSPIBaselinePatchOf : public testing::TestWithParam<PatchCase> {};

TEST_P(MSPIBaselinePatchOf, ShowsTheBaselineAndRestoresTheTaskExactly) {
    const auto& [what, task, patched] = GetParam();
    const auto document = documentFromXML("<Tasks><Task>" + task + "</Task></Tasks>", MSPCXMLContent::Everything);
    const auto before = markupOf(document);
    PatchOf patch(document.root().firstChildElement("Task"), 1);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(markupOf(document), before);
        EXPECT_FALSE(patch->isPatched());
        patch->apply();
        EXPECT_TRUE(patch->isPatched());
        EXPECT_EQ(patch->isTargetRemoved(), patched == missing);
        const auto target = document.root().firstChildElement("Task");
        EXPECT_EQ(withoutBaselineContent(target ? markupOfChildren(target) : std::string(missing)),
                  withoutBaselineContent(patched));
        patch->revert();
    }
    EXPECT_EQ(markupOf(document), before);
    EXPECT_FALSE(patch->isPatched());
    EXPECT_FALSE(patch->isTargetRemoved());
}

const PatchCase patchCases[] = {
    {"AllValues",
     "<Start>a</Start><Finish>b</Finish><Duration>c</Duration><Work>d</Work><Baseline><Number>1</Number><Start>A</"
     "Start>"
     "<Finish>B</Finish><Duration>C</Duration><Work>D</Work></Baseline>",
     "<Start>A</Start><Finish>B</Finish><Duration>C</Duration><Work>D</Work><Baseline><Number>1</Number><Start>A</"
     "Start>"
     "<Finish>B</Finish><Duration>C</Duration><Work>D</Work></Baseline>"},
    {"OneValueOnly", "<Start>a</Start><Finish>b</Finish><Baseline><Number>1</Number><Finish>B</Finish></Baseline>",
     "<Start>a</Start><Finish>B</Finish><Baseline><Number>1</Number><Finish>B</Finish></Baseline>"},
    {"NoValueAtAll", "<Start>a</Start><Baseline><Number>1</Number></Baseline>",
     "<Start>a</Start><Baseline><Number>1</Number></Baseline>"},
    {"ANameTheTaskLacks", "<Start>a</Start><Baseline><Number>1</Number><Cost>5</Cost></Baseline>",
     "<Start>a</Start><Baseline><Number>1</Number><Cost>5</Cost></Baseline>"},
    {"ANumberOfTheTaskItself", "<Number>7</Number><Baseline><Number>1</Number></Baseline>",
     "<Number>7</Number><Baseline><Number>1</Number></Baseline>"},
    {"NoBaseline", "<Start>a</Start>", std::string(missing)},
    {"AnotherBaselineOnly", "<Start>a</Start><Baseline><Number>0</Number><Start>A</Start></Baseline>",
     std::string(missing)},
    {"ABaselineWithoutNumber", "<Start>a</Start><Baseline><Start>A</Start></Baseline>", std::string(missing)},
    {"ANumberInAnotherForm", "<Start>a</Start><Baseline><Number> 01.0 </Number><Start>A</Start></Baseline>",
     "<Start>A</Start><Baseline><Number> 01.0 </Number><Start>A</Start></Baseline>"},
    {"SeveralBaselines",
     "<Start>a</Start><Baseline><Number>1</Number><Start>A</Start></Baseline><Baseline><Number>1</Number><Start>B</"
     "Start>"
     "</Baseline><Baseline><Number>2</Number><Start>C</Start></Baseline>",
     "<Start>B</Start><Baseline><Number>1</Number><Start>A</Start></Baseline><Baseline><Number>1</Number><Start>B</"
     "Start>"
     "</Baseline><Baseline><Number>2</Number><Start>C</Start></Baseline>"},
    {"SeveralChildrenOfOneNameInTheBaseline",
     "<Start>a</Start><Baseline><Number>1</Number><Start>A</Start><Start>B</Start></Baseline>",
     "<Start>B</Start><Baseline><Number>1</Number><Start>A</Start><Start>B</Start></Baseline>"},
    {"SeveralChildrenOfOneNameInTheTask",
     "<Start>a</Start><Start>b</Start><Baseline><Number>1</Number><Start>A</Start><Start>B</Start></Baseline>",
     "<Start>a</Start><Start>B</Start><Baseline><Number>1</Number><Start>A</Start><Start>B</Start></Baseline>"},
    {"ChildElementsInAReplacedChild",
     "<Start>a<i k=\"v\">b</i><!--c--></Start><Baseline><Number>1</Number><Start>A</Start></Baseline>",
     "<Start>A</Start><Baseline><Number>1</Number><Start>A</Start></Baseline>"},
    {"TextInPieces",
     "<Start><![CDATA[a]]></Start><Baseline><Number>1</Number><Start>A<!--x--><![CDATA[B]]><i>C</i></Start></Baseline>",
     "<Start>ABC</Start><Baseline><Number>1</Number><Start>A<!--x--><![CDATA[B]]><i>C</i></Start></Baseline>"},
    {"AnEmptyValue", "<Start>a</Start><Baseline><Number>1</Number><Start/></Baseline>",
     "<Start/><Baseline><Number>1</Number><Start/></Baseline>"},
    {"AValueForAnEmptyChild", "<Start/><Baseline><Number>1</Number><Start>A</Start></Baseline>",
     "<Start>A</Start><Baseline><Number>1</Number><Start>A</Start></Baseline>"},
    {"CommentsAroundAReplacedChild",
     "<!--1--><Start>a</Start><!--2--><Baseline><!--3--><Number>1</Number><Start>A</Start></Baseline><!--4-->",
     "<!--1--><Start>A</Start><!--2--><Baseline><!--3--><Number>1</Number><Start>A</Start></Baseline><!--4-->"},
    {"ANestedChildOfTheName", "<Inner><Start>a</Start></Inner><Baseline><Number>1</Number><Start>A</Start></Baseline>",
     "<Inner><Start>a</Start></Inner><Baseline><Number>1</Number><Start>A</Start></Baseline>"},
    {"TheNameOfTheBaselineItself",
     "<Start>a</Start><Baseline><Number>1</Number><Baseline>x</Baseline><Start>A</Start></Baseline>",
     "<Start>A</Start><Baseline>x</Baseline>"},
};

INSTANTIATE_TEST_SUITE_P(MSPIBaselinePatch, MSPIBaselinePatchOf, testing::ValuesIn(patchCases),
                         [](const auto& given) { return given.param.what; });

TEST(MSPIBaselinePatch, TakesNumberZeroForABaselineLikeAnyOther) {
    const auto document = documentFromXML(
        "<Tasks><Task><Start>a</Start><Baseline><Number>0</Number><Start>A</Start></Baseline></Task></Tasks>");
    PatchOf patch(document.root().firstChild(), 0);
    patch->apply();
    EXPECT_EQ(document.root().firstChild().firstChild().stringValue(), "A");
}

TEST(MSPIBaselinePatch, ChangesNothingBeforeItIsApplied) {
    const auto document = documentFromXML("<Tasks><Task/></Tasks>");
    PatchOf patch(document.root().firstChild(), 1);
    EXPECT_FALSE(patch->isPatched());
    EXPECT_FALSE(patch->isTargetRemoved());
    EXPECT_EQ(markupOf(document), "<Tasks><Task/></Tasks>");
}

TEST(MSPIBaselinePatch, CanNotBeAppliedTwice) {
    for (const auto* task :
         {"<Tasks><Task/></Tasks>",
          "<Tasks><Task><Start>a</Start><Baseline><Number>1</Number><Start>A</Start></Baseline></Task></Tasks>"}) {
        const auto document = documentFromXML(task);
        const auto before = markupOf(document);
        PatchOf patch(document.root().firstChild(), 1);
        patch->apply();
        const auto patched = markupOf(document);
        EXPECT_RAISES(patch->apply(), MSPCInternalInconsistency,
                      "Can not apply patch to already patched target. Must revert first.");
        EXPECT_TRUE(patch->isPatched());
        EXPECT_EQ(markupOf(document), patched);
        patch->revert();
        EXPECT_EQ(markupOf(document), before);
    }
}

TEST(MSPIBaselinePatch, CanNotBeRevertedUnlessApplied) {
    const auto document = documentFromXML("<Tasks><Task/></Tasks>");
    PatchOf patch(document.root().firstChild(), 1);
    EXPECT_RAISES(patch->revert(), MSPCInternalInconsistency,
                  "Can not revert patch at non-patched target. Must apply patch first.");
    patch->apply();
    patch->revert();
    EXPECT_RAISES(patch->revert(), MSPCInternalInconsistency,
                  "Can not revert patch at non-patched target. Must apply patch first.");
    EXPECT_EQ(markupOf(document), "<Tasks><Task/></Tasks>");
}

// The patches of all tasks of a document, applied from the last to the first and reverted the other way.
class AllPatches {
public:
    AllPatches(const MSPCXMLDocument& document, std::int32_t number) {
        auto task = document.root().firstChildElement("Task");
        for (; task; task = task.nextSiblingElement("Task")) {
            _patches.emplace_back(task, number);
        }
    }
    void apply() {
        for (auto patch = _patches.rbegin(); patch != _patches.rend(); ++patch) {
            (*patch)->apply();
        }
    }
    void revert() {
        for (auto& patch : _patches) {
            patch->revert();
        }
    }

private:
    std::deque<PatchOf> _patches;
};

constexpr std::string_view kept = "<Task>kept<Baseline><Number>1</Number></Baseline></Task>";

TEST(MSPIBaselinePatch, BringsRemovedTasksBackToTheirPlaces) {
    struct Case {
        std::string tasks;
        std::string patched;
    };
    const std::string k(kept);
    const Case cases[] = {
        {"<Task>1</Task>" + k + k, k + k},                                         // the first
        {k + "<Task>2</Task>" + k, k + k},                                         // one in the middle
        {k + k + "<Task>3</Task>", k + k},                                         // the last
        {"<Task>1</Task><Task>2</Task><Task>3</Task>", ""},                        // all
        {"<Task>1</Task><Task>2</Task>" + k + "<Task>4</Task><Task>5</Task>", k},  // neighbours
        {k + k, k + k},                                                            // none
        {"<!--a--><Task>1</Task><!--b--><Task>2</Task><!--c-->" + k + "<!--d--><Task>4</Task><!--e-->",
         "<!--a--><!--b--><!--c-->" + k + "<!--d--><!--e-->"},
        {"<Other/><Task>1</Task><Other/>", "<Other/><Other/>"},
    };
    for (const auto& [tasks, patched] : cases) {
        const auto document = documentFromXML("<Tasks>" + tasks + "</Tasks>", MSPCXMLContent::Everything);
        const auto before = document.serialized();
        AllPatches patches(document, 1);
        patches.apply();
        EXPECT_EQ(markupOf(document), patched.empty() ? "<Tasks/>" : "<Tasks>" + patched + "</Tasks>") << tasks;
        patches.revert();
        EXPECT_EQ(document.serialized(), before) << tasks;
    }
}

TEST(MSPIBaselinePatch, HidesARemovedTaskFromEveryQuery) {
    const auto document = documentFromXML("<Tasks><Task><UID>1</UID></Task></Tasks>");
    PatchOf patch(document.root().firstChild(), 1);
    patch->apply();
    EXPECT_TRUE(document.root().nodesForXPath("//Task")->empty());
    patch->revert();
    EXPECT_EQ(document.root().nodesForXPath("Task[UID=1]")->size(), 1U);
}

// Tasks with any number of values and baselines, comments between them, names repeated.
std::string randomTasks(std::mt19937& random) {
    const auto some = [&](std::size_t count) { return random() % count; };
    const std::vector<std::string> names = {"Start", "Finish", "Work", "Cost"};
    const auto value = [&](const std::string& text) {
        const auto& name = names[some(4)];
        return "<" + name + ">" + text + (some(5) == 0 ? "<i>x</i>" : "") + "</" + name + ">";
    };
    std::string tasks;
    for (auto count = some(9); count > 0; --count) {
        tasks += some(3) == 0 ? "<!--c-->" : "";
        tasks += "<Task>";
        for (auto values = some(5); values > 0; --values) {
            tasks += value("now" + std::to_string(values));
        }
        for (auto baselines = some(3); baselines > 0; --baselines) {
            tasks += "<Baseline><Number>" + std::to_string(some(3)) + "</Number>";
            for (auto values = some(4); values > 0; --values) {
                tasks += value("then" + std::to_string(values));
            }
            tasks += "</Baseline>";
        }
        tasks += "</Task>";
    }
    return "<Tasks>" + tasks + "</Tasks>";
}

TEST(MSPIBaselinePatch, LeavesNoTraceOnGeneratedDocuments) {
    std::mt19937 random(20120110);
    for (int run = 0; run < 500; ++run) {
        const auto markup = randomTasks(random);
        const auto document = documentFromXML(markup, MSPCXMLContent::Everything);
        const auto before = document.serialized();
        for (std::int32_t number = 0; number < 3; ++number) {
            const auto withBaseline =
                document.root().nodesForXPath("Task[Baseline[Number=" + std::to_string(number) + "]]")->size();
            AllPatches patches(document, number);
            patches.apply();
            EXPECT_EQ(document.root().nodesForXPath("Task")->size(), withBaseline) << markup;
            patches.revert();
            ASSERT_EQ(document.serialized(), before) << markup;
        }
    }
}

}  // namespace
