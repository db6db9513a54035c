#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MSPDIMemoryImport.h"
#include "RunInMemory.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class ViewCommandTest : public RunInMemory {
protected:
    ViewCommandTest() {
        world.machine.addFile(
            "/home/me/plans/House.xml",
            R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2026-05-04T08:00:00</StartDate><Calendars>)"
            R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>)"
            "<Tasks><Task><UID>12</UID><Name>Paint</Name><OutlineLevel>1</OutlineLevel><Duration>PT8H0M0S</Duration>"
            "<Start>2026-05-04T08:00:00</Start><Deadline>2026-05-05T08:00:00</Deadline></Task></Tasks></Project>");
        world.machine.addFile("/home/me/Other.xml", "<html/>");
        world.machine.addFolder("/home/me/Folder");
        for (const auto& [file, content] : MSPDIImportInMemory("/home/me/plans/House.xml", world.services).bundle) {
            world.machine.addFile("/home/me/Mill.kdzx/" + file, content);
        }
    }

    [[nodiscard]] std::string page(const std::string& name) const { return world.machine.contents("/home/me/" + name); }
};

}  // namespace

TEST_F(ViewCommandTest, writesThePageOfAPlanWithItsLosses) {
    EXPECT_EQ(run({"view", "plans/House.xml"}), 0);
    EXPECT_EQ(out.str(), "House.html: 1 task, 0 resources, 0 baselines\n");
    EXPECT_EQ(err.str(), "");
    EXPECT_THAT(page("House.html"), StartsWith("<!DOCTYPE html>\n"));
    EXPECT_THAT(page("House.html"), HasSubstr("<td>1<td>Paint<td>2026-05-04 08:00"));
    EXPECT_THAT(page("House.html"), HasSubstr("\"kind\":\"deadline\""));
    EXPECT_THAT(page("House.html"), HasSubstr("\"source\":\"House.xml\""));
}

TEST_F(ViewCommandTest, leavesItToThePageToSayWhatLostValuesMean) {
    world.machine.addFile(
        "/home/me/Words.xml",
        R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2026-05-04T08:00:00</StartDate><Calendars>)"
        R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars><Tasks>)"
        "<Task><UID>1</UID><Name>Dig</Name><OutlineLevel>1</OutlineLevel></Task>"
        "<Task><UID>2</UID><Name>Paint</Name><OutlineLevel>1</OutlineLevel><ConstraintType>6</ConstraintType>"
        "<Deadline>1970-01-02T00:00:00</Deadline><CalendarUID>3</CalendarUID><Contact>40 "
        "hours</Contact><PredecessorLink>"
        "<PredecessorUID>1</PredecessorUID><Type>1</Type><LinkLag>-600</LinkLag><LagFormat>5</LagFormat></"
        "PredecessorLink>"
        "<PredecessorLink><PredecessorUID>1</PredecessorUID><Type>3</Type><LinkLag>50</LinkLag><LagFormat>19</"
        "LagFormat>"
        "</PredecessorLink></Task></Tasks></Project>");
    EXPECT_EQ(run({"view", "Words.xml"}), 0);
    for (const auto* const place :
         {R"("Paint","-600","t2",{"work":-3600.0,"link":["1","Dig"]}])",
          R"("Paint","50","t2",{"percentage":50.0,"link":["1","Dig"]}])", R"("Paint","6","t2",{"constraint":6}])",
          R"("Paint","1970-01-02T00:00:00","t2",{"date":86400}])",
          R"("Paint","3","t2",{"target":["calendar","3",""]}])", R"("Paint","40 hours","t2"])"}) {
        EXPECT_THAT(page("Words.html"), HasSubstr(place));
    }
}

TEST_F(ViewCommandTest, writesThePageOfADocumentWithoutAnAccount) {
    EXPECT_EQ(run({"view", "-o", "pages.html", "Mill.kdzx/"}), 0);
    EXPECT_EQ(out.str(), "pages.html: 1 task, 0 resources, 0 baselines\n");
    EXPECT_THAT(page("pages.html"), HasSubstr("\"losses\":null"));
    EXPECT_EQ(run({"view", "--json", "-o", "pages.html", "Mill.kdzx"}), 0);  // what is named is replaced
    EXPECT_EQ(told()["page"], "pages.html");
    EXPECT_EQ(told()["bytes"], page("pages.html").size());
    EXPECT_EQ(told()["tasks"], 1);
    EXPECT_EQ(run({"view", "-q", "-o", "pages.html", "Mill.kdzx"}), 0);
    EXPECT_EQ(out.str() + err.str(), "");
    EXPECT_EQ(run({"view", "-o", "-", "Mill.kdzx"}), 0);
    EXPECT_EQ(out.str(), page("pages.html"));
}

TEST_F(ViewCommandTest, replacesNothingThatNobodyNamed) {
    world.machine.addFile("/home/me/House.html", "mine");
    EXPECT_EQ(run({"view", "plans/House.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: House.html: it exists already (-o House.html replaces it)\n");
    EXPECT_EQ(page("House.html"), "mine");
    EXPECT_EQ(run({"view", "-o", "plans/House.xml", "plans/House.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: plans/House.xml: it is what the page shall show\n");
    EXPECT_THAT(page("plans/House.xml"), StartsWith("<Project"));
    EXPECT_EQ(run({"view", "-o", "Folder", "plans/House.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: Folder: it is a folder\n");
    EXPECT_EQ(run({"view", "-o", "Mill.kdzx/Actual.xml", "plans/House.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: Mill.kdzx/Actual.xml: it would become a part of the document /home/me/Mill.kdzx\n");
    EXPECT_THAT(page("Mill.kdzx/Actual.xml"), testing::HasSubstr("<scenario"));
}

TEST_F(ViewCommandTest, tellsInOneLineWhatItCouldNotLookAt) {
    for (const auto& [file, reason] : {std::pair<std::string, std::string>("None.xml", "no such file"),
                                       {"Folder", "no bundle: it holds no __TOC.xml"},
                                       {"Other.xml", "XML, but no plan of Microsoft Project (MSPIMapper.map: "}}) {
        EXPECT_EQ(run({"view", "-o", "page.html", file}), 2);
        EXPECT_EQ(out.str(), "");
        EXPECT_THAT(err.str(), StartsWith("mspdi: " + file + ": " + reason));
        EXPECT_EQ(err.str().find('\n'), err.str().size() - 1);
        EXPECT_FALSE(world.machine.exists("/home/me/page.html"));
    }
    world.machine.failAlways("writeAtomically", "No space left on device");
    EXPECT_EQ(run({"view", "-o", "page.html", "Mill.kdzx"}), 2);
    EXPECT_EQ(err.str(), "mspdi: page.html: No space left on device\n");
}

TEST_F(ViewCommandTest, leavesOutWhatItCannotRead) {
    auto contents = page("Mill.kdzx/__TOC.xml");
    contents.insert(contents.find("<date-display>"), R"(<scenario id="b" name="Baseline" filename="Baseline.xml"/>)");
    world.machine.addFile("/home/me/Mill.kdzx/__TOC.xml", contents);
    EXPECT_EQ(run({"view", "-o", "page.html", "Mill.kdzx"}), 0);
    EXPECT_THAT(err.str(), HasSubstr("left out: Baseline.xml: "));
    EXPECT_THAT(out.str(), HasSubstr("0 baselines"));
}

TEST_F(ViewCommandTest, refusesWrongArguments) {
    EXPECT_EQ(run({"view"}), 2);
    EXPECT_EQ(run({"view", "Mill.kdzx", "Mill.kdzx"}), 2);
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(run({"view", "--help"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("--open"));
}
