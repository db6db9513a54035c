#include "KZDXDiff.h"

#include <gtest/gtest.h>

#include "InMemoryFileSystem.h"
#include "KZDXOtherScenarios.h"
#include "SoundBundle.h"

// Each kind of difference, made by hand.

namespace {

using Lines = std::vector<std::string>;

// "<kind> <name>: <what>" for each difference; "!<failure>" where one cannot be opened.
Lines differencesOf(BundleFiles old, BundleFiles now, const std::string& scenario = {}) {
    const auto oldFiles = KZDXFilesInMemory(std::move(old));
    const auto newFiles = KZDXFilesInMemory(std::move(now));
    std::string failure;
    const auto before = KZDXOpenDocument::open(*oldFiles, scenario, failure);
    const auto after = before ? KZDXOpenDocument::open(*newFiles, scenario, failure) : std::nullopt;
    if (!after) {
        return {std::string("!").append(failure)};
    }
    Lines lines;
    for (const auto& difference : KZDXDiff(*before, *after)) {
        lines.push_back(
            std::string(difference.kind).append(" ").append(difference.name).append(": ").append(difference.what));
    }
    return lines;
}

void expectDifferences(std::string_view piece, std::string_view other, const Lines& expected) {
    EXPECT_EQ(differencesOf(soundBundle(), brokenBundle("Actual.xml", piece, other)), expected)
        << piece << " -> " << other;
}

// A document with the tasks of an outline, "Name@id", with two blanks before those of the group above.
BundleFiles outlineOf(const Lines& tasks) {
    std::string text;
    std::string children;
    std::string inGroup;
    std::string group;
    const auto endGroup = [&] {
        text.append(group).append(group.empty() ? "" : inGroup + "</task>\n");
        group.clear();
        inGroup.clear();
    };
    for (const auto& task : tasks) {
        const bool isInGroup = task.starts_with("  ");
        const auto at = task.find('@');
        const auto name = task.substr(isInGroup ? 2 : 0, at - (isInGroup ? 2 : 0));
        const auto id = task.substr(at + 1);
        const auto element = std::string("<task id='").append(id).append("'><title>").append(name).append("</title>");
        const auto child = std::string("<child-task idref='").append(id).append("'/>");
        if (isInGroup) {
            inGroup += child;
            text.append(element).append("<type>task</type></task>\n");
            continue;
        }
        endGroup();
        children += child;
        group = element + "<type>group</type>";
    }
    endGroup();
    auto files = soundBundle();
    files["Actual.xml"] = "<scenario id='aActual0001'><top-task idref='t-1'/><task id='t-1'><type>group</type>" +
                          children + "</task>\n" + text + "</scenario>";
    return files;
}

}  // namespace

TEST(KZDXDiff, tellsNothingOfADocumentAgainstItself) {
    EXPECT_EQ(differencesOf(soundBundle(), soundBundle()), Lines());
    EXPECT_EQ(differencesOf(soundBundle(), soundBundle(), "Baseline"), Lines());
}

TEST(KZDXDiff, doesNotCountIdsOfScenariosAndTimesOfImports) {
    auto files = soundBundle();
    for (auto& [name, content] : files) {
        for (auto found = content.find("aActual0001"); found != std::string::npos;
             found = content.find("aActual0001")) {
            content.replace(found, 11, "bOtherId_99");
        }
    }
    files["Actual.xml"] = withReplaced(files["Actual.xml"], "2026-11-21 20:00:00", "2027-01-01 00:00:00");
    EXPECT_EQ(differencesOf(soundBundle(), files), Lines());
}

TEST(KZDXDiff, tellsDatesInWords) {
    expectDifferences("<leveled-start>2026-05-29T17:00:00+02:00", "<leveled-start>2026-06-01T17:00:00+02:00",
                      {"date Done (t4): start after leveling 3 days later, Fri 29 May 17:00 -> Mon 1 Jun 17:00"});
    expectDifferences("<end-date>2026-05-05T17:00:00+02:00", "<end-date>2026-05-04T15:30:00+02:00",
                      {"date Dig (t2): ends 1 day 1 hour 30 minutes earlier, Tue 5 May 17:00 -> Mon 4 May 15:30"});
    expectDifferences("<static-cost>0.000000</static-cost>\n        <start-date>2026-05-04T08:00:00+02:00",
                      "<static-cost>0.000000</static-cost>\n        <start-date>2026-05-07T08:00:00+02:00",
                      {"date Dig (t2): starts 3 days later, Mon 4 May 08:00 -> Thu 7 May 08:00"});
    expectDifferences("<end-date>2026-05-05T17:00:00+02:00", "<end-date>2027-05-05T17:00:00+02:00",
                      {"date Dig (t2): ends 365 days later, Tue 5 May 2026 17:00 -> Wed 5 May 2027 17:00"});
    expectDifferences("<leveled-start>2026-05-29T17:00:00+02:00</leveled-start>", "",
                      {"date Done (t4): start after leveling is gone, was Fri 29 May 2026 17:00"});
    expectDifferences("<leveled-start>2026-05-29T17:00:00+02:00<", "<leveled-start>soon<",
                      {"date Done (t4): start after leveling Fri 29 May 17:00 -> \"soon\""});
}

TEST(KZDXDiff, countsDatesThatDifferInTheirOffsetAlone) {
    expectDifferences("<leveled-start>2026-05-29T17:00:00+02:00", "<leveled-start>2026-05-29T17:00:00+03:00",
                      {"offset : 1 date differs in the offset from Greenwich alone"});
    expectDifferences("<leveled-start>2026-05-29T17:00:00+02:00", "<leveled-start>2026-05-29T15:00:00Z",
                      {"offset : 1 date differs in the offset from Greenwich alone"});
}

TEST(KZDXDiff, tellsEffortAndCompletion) {
    expectDifferences("<effort>57600<", "<effort>86400<",
                      {"effort Dig (t2): effort 8 hours more, 16 hours -> 24 hours"});
    expectDifferences("<effort>57600<", "<effort>57600.00<", {});
    expectDifferences("<completion-percentage>0.50<", "<completion-percentage>0.75<",
                      {"completion Dig (t2): completion 50% -> 75%"});
    expectDifferences("<completion-percentage>0.50</completion-percentage>", "",
                      {"completion Dig (t2): completion 50% -> 0%"});
    expectDifferences("<effort-done>28800</effort-done>", "",
                      {"completion Dig (t2): effort done 8 hours less, 8 hours -> 0 hours"});
    expectDifferences("<duration>57600.00<", "<duration>61200.00<",
                      {"effort Paint (t3), piece 2: duration 1 hour more, 16 hours -> 17 hours"});
}

TEST(KZDXDiff, tellsLinksAndAssignments) {
    expectDifferences("<prerequisite-task idref=\"t3\" kind=\"SS\"/>", "<prerequisite-task idref=\"t3\" kind=\"FS\"/>",
                      {"link Done (t4): waits for Paint (t3) finish to start instead of start to start"});
    expectDifferences(
        "<prerequisite-task idref=\"t3\" kind=\"SS\"/>", "<prerequisite-task idref=\"t2\" kind=\"SS\"/>",
        {"link Done (t4): waits for Dig (t2) now, start to start", "link Done (t4): no longer waits for Paint (t3)"});
    expectDifferences("<assignment idref=\"r1\"/>", "<assignment idref=\"r2\"/>",
                      {"assignment Dig (t2): is no longer assigned to Anna (r1)",
                       "assignment Dig (t2): is assigned to Wood (r2) now"});
}

TEST(KZDXDiff, tellsNotesAndFields) {
    expectDifferences("<lit>Mind the pipes<", "<lit>Mind the cables<",
                      {"note Dig (t2): note \"Mind the pipes\" -> \"Mind the cables\""});
    expectDifferences("<string>North<", "<string>South<", {"field Dig (t2): Region \"North\" -> \"South\""});
    expectDifferences("<key>Region<", "<key>Colour<", {"field Dig (t2): Region is called Colour now, still \"North\""});
}

TEST(KZDXDiff, tellsTypesCostsAndTheRest) {
    expectDifferences("<type>milestone<", "<type>task<", {"type Done (t4): becomes a task, was a milestone"});
    expectDifferences("<static-cost>0.000000<", "<static-cost>12.500000<", {"cost Dig (t2): fixed cost 0 -> 12.5"});
    expectDifferences("<priority>500<", "<priority>900<", {"other Dig (t2): priority 500 -> 900"});
    expectDifferences("<recalculate>duration</recalculate>", "",
                      {"other Dig (t2): what is recalculated \"duration\" -> none"});
    expectDifferences("<priority>500</priority>", "<priority>500</priority><colour/>",
                      {"other Dig (t2): 'colour' has changed"});
    expectDifferences("<cost-per-hour>50<", "<cost-per-hour>60<", {"cost Anna (r1): cost per hour 50 -> 60"});
}

TEST(KZDXDiff, tellsNamesAndGroups) {
    expectDifferences("<title>Dig<", "<title>Dig deep<", {"renamed Dig deep (t2): renamed, was \"Dig\""});
    expectDifferences("<name>Anna<", "<name>Berta<", {"renamed Berta (r1): renamed, was \"Anna\""});
    auto files = brokenBundle("Actual.xml", "<child-task idref=\"t2\"/>", "");
    files["Actual.xml"] = withReplaced(files["Actual.xml"], "<child-task idref=\"t4\"/>",
                                       "<child-task idref=\"t4\"/><child-task idref=\"t2\"/>");
    EXPECT_EQ(differencesOf(soundBundle(), files), Lines{"moved Dig (t2): moved from Building (t1) to the top level"});
    expectDifferences("<child-task idref=\"t4\"/>", "",
                      {"moved Done (t4): moved from the top level to outside the outline"});
}

TEST(KZDXDiff, tellsWorkingTimesAndSettings) {
    expectDifferences("start-time=\"46800\" end-time=\"61200\"", "start-time=\"46800\" end-time=\"64800\"",
                      {"calendar Project (r-1): Monday: 08:00-12:00 13:00-18:00, was 08:00-12:00 13:00-17:00"});
    expectDifferences("<schedule-day day-of-week=\"tuesday\"/>", "",
                      {"calendar Project (r-1): Tuesday: not told, was no work"});
    expectDifferences("2026-12-26T23:59:59+01:00", "2026-12-27T23:59:59+01:00",
                      {"calendar Project (r-1): Time Off Thu 24 Dec 2026 to Sat 26 Dec 2026 is gone",
                       "calendar Project (r-1): Time Off Thu 24 Dec 2026 to Sun 27 Dec 2026 is new"});
    expectDifferences("<granularity>hours<", "<granularity>days<", {"setting : granularity \"hours\" -> \"days\""});
    auto files = soundBundle();
    files["__TOC.xml"] = withReplaced(files["__TOC.xml"], "<title>House<", "<title>Villa<");
    files["__TOC.xml"] = withReplaced(files["__TOC.xml"], "hours-per-year=\"1921\"", "hours-per-year=\"1800\"");
    EXPECT_EQ(differencesOf(soundBundle(), files),
              (Lines{"setting : title \"House\" -> \"Villa\"", "setting : a year of effort has 1800 hours, had 1921"}));
}

TEST(KZDXDiff, tellsHoursOfBothFormatsInOneLine) {
    auto old = soundBundle();
    old["__TOC.xml"] = withReplaced(old["__TOC.xml"], "hours-per-year=\"1921\"", "hours-per-year=\"1920\"");
    auto now = old;
    auto& contents = now["__TOC.xml"];
    for (auto found = contents.find("-day=\"8\""); found != std::string::npos; found = contents.find("-day=\"8\"")) {
        contents.replace(found, 8, "-day=\"7\"");
    }
    contents = withReplaced(contents, "$1,234.56", "1.234,56 EUR");
    EXPECT_EQ(differencesOf(old, now), (Lines{"setting : currency format \"$1,234.56\" -> \"1.234,56 EUR\"",
                                              "setting : a day has 7 hours, had 8"}));
}

TEST(KZDXDiff, tellsWhatIsAbbreviatedInWords) {
    expectDifferences("<schedule-type>asap<", "<schedule-type>alap<",
                      {"other Dig (t2): scheduling as soon as possible -> as late as possible"});
    expectDifferences("<schedule-type>asap</schedule-type>", "",
                      {"other Dig (t2): scheduling as soon as possible -> none"});
}

TEST(KZDXDiff, tellsTheStartBeforeTheEnd) {
    expectDifferences(
        "<start-date>2026-05-11T08:00:00+02:00</start-date>\n        <end-date>2026-05-12T17:00:00+02:00<",
        "<start-date>2026-05-12T08:00:00+02:00</start-date>\n        <end-date>2026-05-13T17:00:00+02:00<",
        {"date Paint (t3), piece 2: starts 1 day later, Mon 11 May 08:00 -> Tue 12 May 08:00",
         "date Paint (t3), piece 2: ends 1 day later, Tue 12 May 17:00 -> Wed 13 May 17:00"});
}

TEST(KZDXDiff, tellsWorkingTimesOfAResource) {
    const std::string schedule =
        "<schedule><schedule-day day-of-week=\"monday\"><time-span start-time=\"36000\" "
        "end-time=\"50400\"/></schedule-day><calendar name=\"Time Off\"><event "
        "start=\"2026-08-05T10:00:00Z\" end=\"2026-08-05T12:00:00Z\"/><event "
        "start=\"2026-08-06T00:00:00Z\" end=\"2026-08-06T23:59:59Z\"/></calendar></schedule>";
    expectDifferences("<name>Anna</name>", "<name>Anna</name>" + schedule,
                      {"calendar Anna (r1): Monday: 10:00-14:00, was as the project",
                       "calendar Anna (r1): Time Off Thu 6 Aug 2026 is new",
                       "calendar Anna (r1): Time Off Wed 5 Aug 2026 10:00 to Wed 5 Aug 2026 12:00 is new"});
}

// Both texts are long, and begin the same.
TEST(KZDXDiff, showsThePartOfLongTextsThatDiffers) {
    const std::string words(100, 'w');
    EXPECT_EQ(differencesOf(brokenBundle("Actual.xml", "Mind the pipes", words + " and the pipes"),
                            brokenBundle("Actual.xml", "Mind the pipes", words + " and the cables")),
              Lines{"note Dig (t2): note \"...wwwwwwwwwww and the pipes\" -> \"...wwwwwwwwwww and the cables\""});
    EXPECT_EQ(differencesOf(brokenBundle("Actual.xml", "Mind the pipes", words),
                            brokenBundle("Actual.xml", "Mind the pipes", words + "!")),
              Lines{"note Dig (t2): note \"..." + std::string(20, 'w') + "\" -> \"..." + std::string(20, 'w') + "!\""});
    // Whole characters: each of these has two bytes, and it is the second one that differs.
    std::string umlauts;
    for (int i = 0; i < 60; ++i) {
        umlauts += "\xC3\xA4";
    }
    EXPECT_EQ(differencesOf(brokenBundle("Actual.xml", "Mind the pipes", umlauts + "x\xC3\xA4"),
                            brokenBundle("Actual.xml", "Mind the pipes", umlauts + "x\xC3\xB6")),
              Lines{"note Dig (t2): note \"..." + umlauts.substr(0, 18) + "x\xC3\xA4\" -> \"..." +
                    umlauts.substr(0, 18) + "x\xC3\xB6\""});
    EXPECT_EQ(differencesOf(brokenBundle("Actual.xml", "Mind the pipes", "pipes"),
                            brokenBundle("Actual.xml", "Mind the pipes", words)),
              Lines{"note Dig (t2): note \"pipes\" -> \"" + std::string(80, 'w') + "...\""});
}

TEST(KZDXDiff, showsThePartOfLongNamesThatDiffers) {
    const std::string name(90, 'n');
    EXPECT_EQ(differencesOf(brokenBundle("Actual.xml", "<title>Dig<", "<title>" + name + " one<"),
                            brokenBundle("Actual.xml", "<title>Dig<", "<title>" + name + " two<")),
              Lines{"renamed " + name.substr(0, 80) + "... (t2): renamed, \"..." + name.substr(0, 19) +
                    " one\" -> \"..." + name.substr(0, 19) + " two\""});
}

TEST(KZDXDiff, keepsABackslashApartFromALineFeed) {
    expectDifferences("<lit>Mind the pipes<", "<lit>Mind\\nthe pipes<",
                      {"note Dig (t2): note \"Mind the pipes\" -> \"Mind\\\\nthe pipes\""});
    expectDifferences("<lit>Mind the pipes<", "<lit>Mind\nthe pipes<",
                      {"note Dig (t2): note \"Mind the pipes\" -> \"Mind\nthe pipes\""});
}

// The id of the assignment stays, but there is no such resource any more.
TEST(KZDXDiff, tellsWhoseResourceIsGone) {
    auto files = soundBundle();
    auto& actual = files["Actual.xml"];
    actual = withReplaced(actual, "<child-resource idref=\"r2\"/>", "");
    const auto begin = actual.find("<resource id=\"r2\">");
    const std::string end = "</resource>";
    actual.erase(begin, actual.find(end, begin) + end.size() - begin);
    EXPECT_EQ(differencesOf(soundBundle(), files), (Lines{"gone Wood (r2): is gone",
                                                          "assignment Paint (t3): is assigned to "
                                                          "Wood (r2), who is gone"}));
    EXPECT_EQ(differencesOf(files, files), Lines());
}

TEST(KZDXDiff, tellsWhoWaitsForATaskThatIsGone) {
    auto files = soundBundle();
    auto& actual = files["Actual.xml"];
    actual = withReplaced(actual, "<child-task idref=\"t2\"/>", "");
    const auto begin = actual.find("<task id=\"t2\">");
    const std::string end = "</task>";
    actual.erase(begin, actual.find(end, begin) + end.size() - begin);
    EXPECT_EQ(differencesOf(soundBundle(), files), (Lines{"link Paint (t3): waits for Dig (t2), which is gone",
                                                          "gone Dig (t2): is gone, was in Building (t1)"}));
}

TEST(KZDXDiff, tellsScenariosThatComeAndGo) {
    auto files = soundBundle();
    files["__TOC.xml"] = withReplaced(files["__TOC.xml"], "name=\"Baseline\"", "name=\"Baseline1\"");
    EXPECT_EQ(differencesOf(soundBundle(), files),
              (Lines{"gone : the scenario \"Baseline\" is gone", "new : the scenario \"Baseline1\" is new"}));
}

TEST(KZDXDiff, tellsNewAndGoneTasks) {
    EXPECT_EQ(differencesOf(outlineOf({"Build@t1", "  Dig@t2", "  Paint@t3"}),
                            outlineOf({"Build@t1", "  Dig@t2", "  Clean@t4"})),
              (Lines{"new Clean (t4): is new, in Build (t1)", "gone Paint (t3): is gone, was in Build (t1)"}));
}

TEST(KZDXDiff, tellsOnlyWhatWasMovedOfAGroup) {
    EXPECT_EQ(differencesOf(outlineOf({"A@t1", "B@t2", "C@t3", "D@t4"}), outlineOf({"D@t4", "A@t1", "B@t2", "C@t3"})),
              Lines{"moved D (t4): moved within its group, now first"});
    EXPECT_EQ(differencesOf(outlineOf({"A@t1", "B@t2", "C@t3", "D@t4"}), outlineOf({"B@t2", "C@t3", "A@t1", "D@t4"})),
              Lines{"moved A (t1): moved within its group, now after C (t3)"});
}

TEST(KZDXDiff, matchesByOutlineAndNameWhereIdsWereGivenAnew) {
    const Lines before = {"Build@t1", "  Dig@t2", "  Paint@t3", "Test@t4", "  Dig@t5"};
    EXPECT_EQ(
        differencesOf(outlineOf(before), outlineOf({"Build@t11", "  Dig@t12", "  Paint@t13", "Test@t14", "  Dig@t15"})),
        Lines{"ids : 5 tasks got another id: matched by outline and name"});
    // One more at the front, and all numbers count on.
    EXPECT_EQ(differencesOf(outlineOf(before),
                            outlineOf({"Plan@t1", "Build@t2", "  Dig@t3", "  Paint@t4", "Test@t5", "  Dig@t6"})),
              (Lines{"ids : 5 tasks got another id: matched by outline and name",
                     "new Plan (t1): is new, at the top level"}));
}

TEST(KZDXDiff, takesATaskForRenamedInItsPlaceWhereIdsWereGivenAnew) {
    const Lines before = {"Build@t1", "  Dig@t2", "  Paint@t3", "  Dry@t4", "Test@t5", "  Look@t6", "Hand over@t7"};
    EXPECT_EQ(differencesOf(outlineOf(before), outlineOf({"Build@t11", "  Dig@t12", "  Coat@t13", "  Dry@t14",
                                                          "Try@t15", "  Look@t16", "Hand over@t17"})),
              (Lines{"ids : 7 tasks got another id: matched by outline and name",
                     "renamed Coat (t13): renamed, was \"Paint\"", "renamed Try (t15): renamed, was \"Test\""}));
    // Two that are new where one is gone: nobody knows which of them it is.
    EXPECT_EQ(
        differencesOf(outlineOf(before), outlineOf({"Build@t11", "  Dig@t12", "  Coat@t13", "  Air@t18", "  Dry@t14",
                                                    "Test@t15", "  Look@t16", "Hand over@t17"})),
        (Lines{"ids : 6 tasks got another id: matched by outline and name", "new Coat (t13): is new, in Build (t11)",
               "new Air (t18): is new, in Build (t11)", "gone Paint (t3): is gone, was in Build (t1)"}));
}

// Both are in one group, and all else stayed with the ids.
TEST(KZDXDiff, takesAnExchangeOfNamesForThat) {
    auto files = soundBundle();
    auto& actual = files["Actual.xml"];
    actual = withReplaced(actual, "<title>Dig<", "<title>Paint<");
    actual = withReplaced(actual, "<task id=\"t3\">\n        <title>Paint<", "<task id=\"t3\">\n        <title>Dig<");
    EXPECT_EQ(differencesOf(soundBundle(), files),
              (Lines{"renamed Paint (t2): renamed, was \"Dig\"", "renamed Dig (t3): renamed, was \"Paint\""}));
}

TEST(KZDXDiff, takesATaskForRenamedWhoseNameANewOneTook) {
    EXPECT_EQ(differencesOf(outlineOf({"Paint@t1", "Dig@t2"}), outlineOf({"Paint walls@t1", "Dig@t2", "Paint@t3"})),
              (Lines{"renamed Paint walls (t1): renamed, was \"Paint\"", "new Paint (t3): is new, at the top level"}));
}

// The ids of pieces follow the highest id of a task, so that a new task changes them all.
TEST(KZDXDiff, matchesPiecesByTheirOrder) {
    auto files = soundBundle();
    auto& actual = files["Actual.xml"];
    actual = withReplaced(actual, "<task id=\"t6\">", "<task id=\"t8\">");
    actual = withReplaced(actual, "<task id=\"t5\">", "<task id=\"t7\">");
    actual = withReplaced(actual, "<child-task idref=\"t5\"/>", "<child-task idref=\"t7\"/>");
    actual = withReplaced(actual, "<child-task idref=\"t6\"/>", "<child-task idref=\"t8\"/>");
    actual = withReplaced(actual, "<child-task idref=\"t4\"/>", "<child-task idref=\"t4\"/><child-task idref=\"t5\"/>");
    actual = withReplaced(actual, "    <task id=\"t4\">",
                          "<task id=\"t5\"><title>Sweep</title><type>task</type></task><task id=\"t4\">");
    EXPECT_EQ(differencesOf(soundBundle(), files), Lines{"new Sweep (t5): is new, at the top level"});
}

TEST(KZDXDiff, needsWhatItCompares) {
    EXPECT_EQ(differencesOf({}, soundBundle()), Lines{"!no bundle: it holds no __TOC.xml"});
    EXPECT_EQ(differencesOf(soundBundle(), soundBundle(), "Baseline7"), Lines{"!it has no scenario 'Baseline7'"});
    EXPECT_EQ(differencesOf(soundBundle(), brokenBundle("Actual.xml", "</scenario>", "")).front().substr(0, 18),
              "!Actual.xml: line ");
    auto files = soundBundle();
    files.erase("Actual.xml");
    EXPECT_EQ(differencesOf(soundBundle(), files), Lines{"!Actual.xml: No such file or directory"});
    EXPECT_EQ(differencesOf(soundBundle(),
                            brokenBundle("__TOC.xml", "filename=\"Actual.xml\"", "filename=\"../Actual.xml\"")),
              Lines{"!it has no scenario"});
}

namespace {

// "<kind>: <what>" for each other scenario that differs, and "!<old or new>: <reason>" for what could not be compared.
Lines otherScenariosOf(const BundleFiles& old, const BundleFiles& now) {
    InMemoryFileSystem machine;
    for (const auto& [files, folder] : {std::pair(old, "/Old.kdzx/"), std::pair(now, "/New.kdzx/")}) {
        for (const auto& [name, content] : files) {
            machine.addFile(folder + name, content);
        }
    }
    const auto oldFiles = KZDXFilesInFolder(machine, "/Old.kdzx");
    const auto newFiles = KZDXFilesInFolder(machine, "/New.kdzx");
    std::string failure;
    const auto before = KZDXOpenDocument::open(*oldFiles, {}, failure);
    const auto after = KZDXOpenDocument::open(*newFiles, {}, failure);
    EXPECT_EQ(failure, "");
    const auto others = KZDXDiffOtherScenarios(*before, *oldFiles, *after, *newFiles);
    Lines lines;
    for (const auto& difference : others.differences) {
        lines.push_back(std::string(difference.kind).append(": ").append(difference.what));
    }
    if (others.obstacle) {
        lines.push_back(std::string(others.obstacle->isOfNew ? "!new: " : "!old: ").append(others.obstacle->reason));
    }
    return lines;
}

}  // namespace

TEST(KZDXOtherScenarios, tellsWhichOnesDiffer) {
    EXPECT_EQ(otherScenariosOf(soundBundle(), soundBundle()), Lines());
    // What differs in the one that is open is no matter here.
    EXPECT_EQ(otherScenariosOf(soundBundle(), brokenBundle("Actual.xml", "<effort>57600<", "<effort>1<")), Lines());
    EXPECT_EQ(otherScenariosOf(soundBundle(), brokenBundle("Baseline.xml", "2026-05-29", "2026-05-30")),
              Lines{"scenario: the scenario \"Baseline\" differs, 1 difference: --scenario Baseline tells"});
    EXPECT_EQ(otherScenariosOf(soundBundle(), brokenBundle("Baseline.xml", "aBaseline01", "aOther00001")), Lines());
}

TEST(KZDXOtherScenarios, comparesTheFilesThatAreNamed) {
    const auto swapped = brokenBundle("__TOC.xml", "filename=\"Baseline.xml\"", "filename=\"Actual.xml\"");
    const auto told = otherScenariosOf(soundBundle(), swapped);
    ASSERT_EQ(told.size(), 1U);
    EXPECT_EQ(told.front().substr(0, 42), "scenario: the scenario \"Baseline\" differs,");
    // One that is in one document only is told by the comparison of these.
    EXPECT_EQ(otherScenariosOf(soundBundle(), brokenBundle("__TOC.xml", "name=\"Baseline\"", "name=\"Baseline4\"")),
              Lines());
}

TEST(KZDXOtherScenarios, tellsWhatItCouldNotRead) {
    const auto cut = brokenBundle("Baseline.xml", "</scenario>", "");
    EXPECT_EQ(otherScenariosOf(soundBundle(), cut).front().substr(0, 25), "!new: Baseline.xml: line ");
    EXPECT_EQ(otherScenariosOf(cut, soundBundle()).front().substr(0, 25), "!old: Baseline.xml: line ");
    auto files = soundBundle();
    files.erase("Baseline.xml");
    EXPECT_EQ(otherScenariosOf(soundBundle(), files), Lines{"!new: Baseline.xml: No such file or directory"});
}

// However many scenarios name a file, it is read a few times at most.
TEST(KZDXOtherScenarios, readsAFileThatManyNameOnlyAFewTimes) {
    std::string entries;
    auto files = soundBundle();
    for (int i = 1; i <= 50; ++i) {
        const auto number = std::to_string(i);
        entries += "<scenario id=\"a" + number + "\" name=\"Baseline" + number + "\" filename=\"Baseline.xml\"/>";
    }
    files["__TOC.xml"] = withReplaced(files["__TOC.xml"], "<auto-level>", entries + "<auto-level>");
    auto other = files;
    other["Baseline.xml"] = withReplaced(other["Baseline.xml"], "2026-05-29", "2026-05-30");
    EXPECT_EQ(otherScenariosOf(files, other).size(), 51U);
    for (int i = 1; i <= 50; ++i) {
        const auto number = std::to_string(i);
        other["Other" + number + ".xml"] = other["Baseline.xml"];
        other["__TOC.xml"] =
            withReplaced(other["__TOC.xml"], "name=\"Baseline" + number + "\" filename=\"Baseline.xml\"",
                         "name=\"Baseline" + number + "\" filename=\"Other" + number + ".xml\"");
    }
    EXPECT_EQ(otherScenariosOf(files, other).back(), "!old: Baseline.xml: too many scenarios share this file");
}
