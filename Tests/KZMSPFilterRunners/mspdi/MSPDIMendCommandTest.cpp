#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>
#include <vector>

#include "MSPCFileSystem.h"
#include "MSPDIProgram.h"
#include "ScopedTempFolder.h"
#include "ServicesInMemory.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string planOf(const std::string& summary) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project"><StartDate>2012-01-09T08:00:00</StartDate><Calendars>)"
           R"(<Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>)"
           "<Tasks><Task><UID>0</UID><Name>P</Name><OutlineLevel>0</OutlineLevel><Summary>" +
           summary + "</Summary></Task></Tasks></Project>";
}

const std::string refused = planOf("0");
const std::string sound = planOf("1");

// Files are real: what appears under which name is the machine's to say.
class MendCommandTest : public testing::Test {
protected:
    MendCommandTest() {
        folder.addFile("Plan.xml", refused);
        folder.addFile("Sound.xml", sound);
        folder.addFile("Page.xml", "<html/>");
    }

    int run(std::vector<std::string> arguments) {
        for (auto& argument : arguments) {
            if (argument.ends_with(".xml") || argument.ends_with(".pod")) {
                argument = folder / argument;
            }
        }
        out.str("");
        err.str("");
        const MSPCServices services{world.clock, MSPCTimeZone::fixed(0), world.log, world.settings,
                                    files,       world.randomSource};
        arguments.insert(arguments.begin(), "mend");
        return MSPDIProgram(arguments, services, {out, err});
    }
    [[nodiscard]] nlohmann::json told() const { return nlohmann::json::parse(out.str()); }
    [[nodiscard]] bool hasOnlyThePlans() const { return folder.listing() == "Page.xml Plan.xml Sound.xml "; }

    ScopedTempFolder folder;
    ServicesInMemory world;
    MSPCDiskFileSystem files;
    std::ostringstream out;
    std::ostringstream err;
};

}  // namespace

TEST_F(MendCommandTest, writesACopyBesideThePlanAndSaysWhatWasDone) {
    EXPECT_EQ(run({"Plan.xml"}), 0);
    EXPECT_EQ(folder.contents("Plan.mended.xml"), sound);
    EXPECT_EQ(folder.contents("Plan.xml"), refused);
    EXPECT_EQ(
        out.str(),
        "Refused by the importer: the task with the number 0 does not stand for the project; nearly always the plan "
        "has no tasks of its own (This does not seem like a MS Project root task (Task UID='0' name='P').)\n"
        "\n"
        "1 x root-task: the task with UID 0 becomes the project's summary task: Summary 1, OutlineLevel 0\n"
        "    Task UID='0' name='P'\n"
        "    Lost or invented: nothing but its dates arrives: it stands for the project, not for work\n" +
            folder / "Plan.mended.xml" + ": the mended copy, which imports\n");
    EXPECT_EQ(err.str(), "");
}

TEST_F(MendCommandTest, overwritesNothing) {
    EXPECT_EQ(run({"Plan.xml"}), 0);
    EXPECT_EQ(::symlink("Nowhere", (folder / "Plan.mended-1.xml").c_str()), 0);
    EXPECT_EQ(run({"Plan.xml"}), 0);
    EXPECT_EQ(folder.contents("Plan.mended-2.xml"), sound);
    EXPECT_EQ(folder.contents("Plan.mended-1.xml"), "(no file)");
    EXPECT_EQ(run({"Plan.xml", "-o", "Sound.xml"}), 2);
    EXPECT_EQ(folder.contents("Sound.xml"), sound);
    EXPECT_THAT(err.str(), HasSubstr("there is such a file already"));
}

TEST_F(MendCommandTest, neverWritesThePlanItself) {
    EXPECT_EQ(::symlink((folder / "Plan.xml").c_str(), (folder / "Link.xml").c_str()), 0);
    EXPECT_EQ(::link((folder / "Plan.xml").c_str(), (folder / "Hard.xml").c_str()), 0);
    for (const auto* name : {"Plan.xml", "Link.xml", "Hard.xml"}) {
        EXPECT_EQ(run({"Plan.xml", "-o", name}), 2) << name;
        EXPECT_THAT(err.str(), HasSubstr("the plan itself")) << name;
        EXPECT_EQ(folder.contents("Plan.xml"), refused);
    }
}

TEST_F(MendCommandTest, writesWhereItIsTold) {
    EXPECT_EQ(run({"Plan.xml", "-o", "Good.xml"}), 0);
    EXPECT_EQ(folder.contents("Good.xml"), sound);
    EXPECT_EQ(run({"Plan.xml", "-o", "none/Good.xml"}), 2);
    EXPECT_THAT(err.str(), StartsWith("mspdi: "));
}

TEST_F(MendCommandTest, writesNothingInADryRun) {
    EXPECT_EQ(run({"--dry-run", "Plan.xml"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("1 x root-task"));
    EXPECT_THAT(out.str(), HasSubstr("nothing was written"));
    EXPECT_TRUE(hasOnlyThePlans());
}

TEST_F(MendCommandTest, looksAtTheNameInADryRunToo) {
    EXPECT_EQ(run({"--dry-run", "Plan.xml", "-o", "Sound.xml"}), 2);
    EXPECT_THAT(err.str(), HasSubstr("there is such a file already"));
    EXPECT_EQ(run({"--dry-run", "Plan.xml", "-o", "Good.xml"}), 0);
    EXPECT_TRUE(hasOnlyThePlans());
}

TEST_F(MendCommandTest, takesNoFolderForTheCopy) {
    EXPECT_EQ(run({"Plan.xml", "-o", "Good/"}), 2);
    EXPECT_THAT(err.str(), HasSubstr("names a folder"));
    EXPECT_TRUE(hasOnlyThePlans());
}

// There is no place beside them. The default name of what the system shows of open files would lie in its own folders.
TEST_F(MendCommandTest, asksForTheNameOfACopyOfWhatIsNoFile) {
    const auto pipe = folder / "Pipe.xml";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto fill = [&] {
        const int writer = ::open(pipe.c_str(), O_RDWR | O_CLOEXEC);
        EXPECT_EQ(::write(writer, refused.data(), refused.size()), static_cast<ssize_t>(refused.size()));
        return writer;
    };
    for (const std::vector<std::string>& more : {std::vector<std::string>{}, {"--dry-run"}, {"-o", "Good.xml"}}) {
        const int writer = fill();
        std::thread closing([writer] {
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            ::close(writer);
        });
        std::vector<std::string> arguments = {"Pipe.xml"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_EQ(run(arguments), more.empty() ? 2 : 0) << err.str();
        closing.join();
        EXPECT_EQ(err.str().find("the copy needs a name: -o MENDED") != std::string::npos, more.empty()) << err.str();
    }
    EXPECT_EQ(folder.contents("Good.xml"), sound);
    const int file = ::open((folder / "Plan.xml").c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(run({"/dev/fd/" + std::to_string(file)}), 2);
    EXPECT_THAT(err.str(), HasSubstr("the copy needs a name: -o MENDED"));
    ::close(file);
}

TEST_F(MendCommandTest, takesNoValuesForFlags) {
    for (const auto* const flag : {"--all=3", "--dry-run=no", "--json=1", "--quiet=2"}) {
        EXPECT_EQ(run({"Plan.xml", flag}), 2) << flag;
        EXPECT_THAT(err.str(), HasSubstr(" takes no value (mspdi --help tells more)")) << flag;
    }
    EXPECT_TRUE(hasOnlyThePlans());
}

TEST_F(MendCommandTest, tellsWhatABoundHasKeptFromBeingDone) {
    auto plan = sound;
    const auto replace = [&plan](std::string_view piece, const std::string& other) {
        plan.replace(plan.find(piece), piece.size(), other);
    };
    replace("2012-01-09T08:00:00</StartDate>",
            "1900-01-01T08:00:00</StartDate><FinishDate>2001-01-01T08:00:00</FinishDate>");
    replace(
        "</Calendar>",
        "<WorkWeeks><WorkWeek><TimePeriod><FromDate>1990-01-01T00:00:00</FromDate><ToDate>1990-01-08T00:00:00"
        "</ToDate></TimePeriod><WeekDays><WeekDay><DayType>2</DayType><DayWorking>0</DayWorking></WeekDay></WeekDays>"
        "</WorkWeek></WorkWeeks></Calendar>");
    folder.addFile("Long.xml", plan);
    EXPECT_EQ(run({"Long.xml", "--only", "work-weeks"}), 0);
    EXPECT_EQ(out.str(), "Left as it is: 1 x work-weeks: plans of more than a hundred years are not written out\n" +
                             folder / "Long.xml" + ": imports as it is; nothing was done\n");
    EXPECT_EQ(run({"Long.xml", "--json", "--only", "work-weeks"}), 0);
    EXPECT_EQ(told()["left"].size(), 1U);
    EXPECT_EQ(told()["left"][0]["step"], "work-weeks");
    EXPECT_EQ(told()["left"][0]["count"], 1);
}

TEST_F(MendCommandTest, saysUnderWhichNameTheCopyImports) {
    EXPECT_EQ(run({"Plan.xml", "-o", "Good.pod"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("Good.pod: the mended copy, which imports under a name that ends in .xml\n"));
}

TEST_F(MendCommandTest, leavesAPlanAloneThatImports) {
    EXPECT_EQ(run({"Sound.xml"}), 0);
    EXPECT_EQ(out.str(), folder / "Sound.xml" + ": imports as it is; nothing was done\n");
    EXPECT_TRUE(hasOnlyThePlans());
}

TEST_F(MendCommandTest, tellsWhatStandsInTheWay) {
    EXPECT_EQ(run({"Page.xml"}), 1);
    EXPECT_THAT(out.str(), HasSubstr("cannot be mended: It is an XML document, but no plan"));
    EXPECT_EQ(err.str(), "");
    EXPECT_TRUE(hasOnlyThePlans());
}

TEST_F(MendCommandTest, couldNotLook) {
    EXPECT_EQ(run({"None.xml"}), 2);
    EXPECT_EQ(err.str(), "mspdi: " + folder / "None.xml" + ": No such file or directory\n");
    EXPECT_EQ(run({}), 2);
    EXPECT_THAT(err.str(), HasSubstr("PLAN"));
    EXPECT_EQ(run({"Plan.xml", "--only", "no-step"}), 2);
    EXPECT_THAT(err.str(), HasSubstr("no-step is no step"));
    EXPECT_EQ(run({"--only", "Plan.xml"}), 2);
    EXPECT_THAT(err.str(), HasSubstr("--only: 1 required STEP missing"));
    EXPECT_EQ(run({"Plan.xml", "-o", ""}), 2);
    EXPECT_THAT(err.str(), HasSubstr("the name is empty"));
    EXPECT_EQ(run({"Plan.xml", "--all", "--only", "root-task"}), 2);
    EXPECT_THAT(err.str(), HasSubstr("--all"));
    EXPECT_TRUE(hasOnlyThePlans());
    EXPECT_EQ(out.str(), "");
}

TEST_F(MendCommandTest, doesOnlyTheStepsThatAreNamed) {
    EXPECT_EQ(run({"Plan.xml", "--only", "outline", "resource-type"}), 1);
    EXPECT_TRUE(hasOnlyThePlans());
    EXPECT_EQ(run({"--dry-run", "--only", "outline,root-task"}), 2);
    EXPECT_EQ(run({"--dry-run", "--only", "outline", "root-task", "Plan.xml"}), 0);
    EXPECT_THAT(out.str(), HasSubstr("1 x root-task"));
}

TEST_F(MendCommandTest, tellsItAsJSON) {
    EXPECT_EQ(run({"Plan.xml", "--json"}), 0);
    EXPECT_EQ(told()["plan"], folder / "Plan.xml");
    EXPECT_EQ(told()["verdict"], "mended");
    EXPECT_THAT(told()["reason"].get<std::string>(), StartsWith("This does not seem like a MS Project root task"));
    EXPECT_EQ(told()["obstacle"], nullptr);
    EXPECT_EQ(told()["steps"].size(), 1U);
    EXPECT_EQ(told()["steps"][0]["step"], "root-task");
    EXPECT_EQ(told()["steps"][0]["count"], 1);
    EXPECT_EQ(told()["converted"], false);
    EXPECT_EQ(told()["mended"], folder / "Plan.mended.xml");
    EXPECT_EQ(run({"Sound.xml", "--json"}), 0);
    EXPECT_EQ(told()["verdict"], "imports");
    EXPECT_EQ(run({"Page.xml", "--json"}), 1);
    EXPECT_EQ(told()["verdict"], "not-mendable");
    EXPECT_EQ(told()["mended"], nullptr);
}

TEST_F(MendCommandTest, tellsNothingWhenQuiet) {
    EXPECT_EQ(run({"Page.xml", "-q"}), 1);
    EXPECT_EQ(out.str() + err.str(), "");
}

TEST_F(MendCommandTest, takesPlansWhateverTheyAreCalled) {
    folder.addFile("Plan.pod", "head" + refused + "tail");
    EXPECT_EQ(run({"Plan.pod"}), 0);
    EXPECT_EQ(folder.contents("Plan.mended.xml"), sound);
}
