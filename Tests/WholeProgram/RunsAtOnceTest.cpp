#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <future>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "PlanGenerator.h"
#include "ProgramRun.h"
#include "StrictXML.h"

namespace fs = std::filesystem;

namespace {

// A folder of the test's own.
fs::path newScratch(const std::string& name) {
    const auto scratch = fs::path(KZMSP_SCRATCH) / name;
    fs::remove_all(scratch);
    fs::create_directories(scratch / "out");
    return scratch;
}

void writeBytes(const fs::path& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

// What is wrong with a bundle: its table of contents lists other scenarios than those that lie beside it.
std::string complaintAboutMixture(const fs::path& bundle) {
    static const std::regex entry(R"re(<scenario id="([^"]+)" name="[^"]+" filename="([^"]+)")re");
    std::map<std::string, std::string> ids;
    const auto toc = bytesOf(bundle / "__TOC.xml");
    for (auto match = std::sregex_iterator(toc.begin(), toc.end(), entry); match != std::sregex_iterator(); ++match) {
        ids[(*match)[2]] = (*match)[1];
    }
    std::set<std::string> names{"__TOC.xml"};
    for (const auto& [name, id] : ids) {
        names.insert(name);
        if (bytesOf(bundle / name).find("id=\"" + id + "\"") == std::string::npos) {
            return name + " is of another import than the table of contents";
        }
    }
    for (const auto& item : fs::directory_iterator(bundle)) {
        if (!names.contains(item.path().filename().native())) {
            return item.path().filename().native() + " is not in the table of contents";
        }
    }
    return ids.contains("Actual.xml") ? "" : "there is no Actual.xml";
}

std::future<ProgramResult> startImport(const fs::path& plan, const fs::path& folder, const fs::path& home) {
    fs::create_directories(folder);
    return std::async(std::launch::async, [plan, folder, home] {
        return runProgram({"--template-path", KZMSP_TEMPLATE, plan.string(), "../out"}, folder,
                          {{"TZ", "UTC"}, {"HOME", home}});
    });
}

std::set<std::string> namesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& item : fs::directory_iterator(folder)) {
        names.insert(item.path().filename().native());
    }
    return names;
}

bool linkTo(const fs::path& target, const fs::path& link) {
    std::error_code error;
    fs::create_directory_symlink(target, link, error);
    return !error;
}

// Moves away the folders whose names begin so and puts links in their places; whether there was any.
bool swapForLinks(const fs::path& folder, const std::string& nameBegin, const fs::path& target) {
    bool isSwapped = false;
    for (const auto& name : namesIn(folder)) {
        std::error_code error;
        if (name.starts_with(nameBegin) && fs::is_directory(fs::symlink_status(folder / name, error))) {
            fs::rename(folder / name, folder / ("moved" + name), error);
            isSwapped = (!error && linkTo(target, folder / name)) || isSwapped;
        }
    }
    return isSwapped;
}

}  // namespace

// Several imports of one plan into one folder, started together: each takes a name of its own and completes its bundle.
TEST(RunsAtOnce, eachGetsABundleOfItsOwn) {
    constexpr int runCount = 20;
    const auto scratch = fs::path(KZMSP_SCRATCH) / "runs-at-once";
    fs::remove_all(scratch);
    fs::create_directories(scratch / "out");
    const auto plan = fs::path(KZMSP_SOURCE) / "examples" / "OfficeMove2003.xml";

    std::vector<std::future<ProgramResult>> runs;
    for (int number = 0; number < runCount; ++number) {
        const auto folder = scratch / std::to_string(number);
        fs::create_directories(folder);
        runs.push_back(std::async(std::launch::async, [plan, folder] {
            return runProgram({"--template-path", KZMSP_TEMPLATE, plan.string(), "../out"}, folder, {{"TZ", "UTC"}});
        }));
    }
    for (auto& run : runs) {
        const auto result = run.get();
        EXPECT_EQ(result.status, 0) << result.standardError;
    }

    std::set<std::string> expected{"OfficeMove2003.kdzx"};
    for (int number = 1; number < runCount; ++number) {
        expected.insert("OfficeMove2003-" + std::to_string(number) + ".kdzx");
    }
    std::set<std::string> actual;
    std::set<std::string> scenarios;
    for (const auto& bundle : fs::directory_iterator(scratch / "out")) {
        actual.insert(bundle.path().filename().string());
        const auto scenario = bytesOf(bundle.path() / "Actual.xml");
        EXPECT_EQ(strictXMLComplaint(bundle.path() / "Actual.xml"), "");
        // Both documents are of one run: the table of contents names the scenario beside it.
        const auto id = scenario.find("id=\"") + 4;
        const auto scenarioId = scenario.substr(id, scenario.find('"', id) - id);
        EXPECT_NE(bytesOf(bundle.path() / "__TOC.xml").find(scenarioId), std::string::npos);
        scenarios.insert(scenarioId);
    }
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(scenarios.size(), static_cast<std::size_t>(runCount));
}

// Two imports that overwrite one bundle again and again: what stands is one plan's, whole, whoever was last.
TEST(RunsAtOnce, thatOverwriteLeaveOneWholeBundle) {
    constexpr int rounds = 60;
    const auto scratch = newScratch("runs-that-overwrite");
    fs::create_directories(scratch / "home/.config");
    writeBytes(scratch / "home/.config/org.kadenza.Kadenza2.MSPImportMSPDI.toml", "OverwriteFilterTarget = true\n");
    const std::vector<std::string> examples{"Baselines.xml", "TradeFairFromEnd.xml"};
    for (const auto& example : examples) {
        fs::create_directories(scratch / example);
        fs::copy_file(fs::path(KZMSP_SOURCE) / "examples" / example, scratch / example / "Plan.xml");
    }
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::future<ProgramResult>> runs;
        for (const auto& example : examples) {
            runs.push_back(startImport(scratch / example / "Plan.xml", scratch / example, scratch / "home"));
            std::this_thread::sleep_for(std::chrono::microseconds(round * 173 % 5'000));
        }
        for (auto& run : runs) {
            const auto result = run.get();
            EXPECT_EQ(result.status, 0) << result.standardError;
        }
        EXPECT_EQ(namesIn(scratch / "out"), std::set<std::string>{"Plan.kdzx"});
        ASSERT_EQ(complaintAboutMixture(scratch / "out/Plan.kdzx"), "") << "round " << round;
    }
}

// An import that overwrites and imports that do not: the others take names of their own, and each log tells the last
// one.
TEST(RunsAtOnce, neverOverwriteTheBundlesOfRunsThatDoNotOverwrite) {
    const auto scratch = newScratch("runs-of-both-kinds");
    fs::create_directories(scratch / "home/.config");
    writeBytes(scratch / "home/.config/org.kadenza.Kadenza2.MSPImportMSPDI.toml", "OverwriteFilterTarget = true\n");
    const auto plan = fs::path(KZMSP_SOURCE) / "examples" / "OfficeMove2003.xml";
    for (int round = 0; round < 10; ++round) {
        fs::remove_all(scratch / "out");
        fs::create_directories(scratch / "out/OfficeMove2003.kdzx");
        std::vector<std::future<ProgramResult>> runs;
        for (int number = 0; number < 4; ++number) {
            const bool overwrites = number == 0;
            runs.push_back(
                startImport(plan, scratch / std::to_string(number), scratch / (overwrites ? "home" : "none")));
        }
        std::set<std::string> told;
        for (auto& run : runs) {
            const auto result = run.get();
            EXPECT_EQ(result.status, 0) << result.standardError;
            const auto begin = result.standardError.rfind("] Output: '") + 11;
            const auto output = result.standardError.substr(begin, result.standardError.find('\'', begin) - begin);
            told.insert(fs::path(output).filename());
        }
        EXPECT_EQ(told, (std::set<std::string>{"OfficeMove2003.kdzx", "OfficeMove2003-1.kdzx", "OfficeMove2003-2.kdzx",
                                               "OfficeMove2003-3.kdzx"}));
        EXPECT_EQ(namesIn(scratch / "out"), told);
        for (const auto& name : told) {
            EXPECT_EQ(complaintAboutMixture(scratch / "out" / name), "") << name;
        }
    }
}

// Somebody who may write to the output folder swaps everything there for links while a plan is mapped.
TEST(RunsAtOnce, areNotLedElsewhereByLinks) {
    const auto scratch = newScratch("links-in-the-way");
    const auto victim = scratch / "victim";
    const auto out = scratch / "out";
    fs::copy(KZMSP_TEMPLATE, victim, fs::copy_options::recursive);
    writeBytes(victim / "Actual.xml", "precious");
    const auto toc = bytesOf(victim / "__TOC.xml");
    std::string plan;
    generatePlan({.tasks = 20'000}, [&plan](std::string_view piece) { plan += piece; });
    writeBytes(scratch / "Plan.xml", plan);
    for (const bool swapsHidden : {false, true}) {
        for (const int delay : {0, 30, 100}) {
            SCOPED_TRACE(std::to_string(delay) + (swapsHidden ? " ms, hidden folder" : " ms, document"));
            fs::remove_all(out);
            fs::create_directories(out);
            auto run = startImport(scratch / "Plan.xml", scratch / "run", scratch / "none");
            std::this_thread::sleep_for(std::chrono::milliseconds(delay));
            bool isSwapped = false;
            while (!isSwapped && run.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) {
                isSwapped = swapsHidden ? swapForLinks(out, ".MSPDIImport-", victim)
                                        : swapForLinks(out, "Plan.kdzx", victim) || linkTo(victim, out / "Plan.kdzx");
            }
            const auto result = run.get();
            EXPECT_EQ(bytesOf(victim / "Actual.xml"), "precious") << result.standardError;
            EXPECT_EQ(bytesOf(victim / "__TOC.xml"), toc);
            EXPECT_EQ(namesIn(victim), namesIn(KZMSP_TEMPLATE));
            if (!swapsHidden && isSwapped) {
                EXPECT_EQ(result.status, 0) << "a link has the name, so the bundle takes the next one";
                EXPECT_EQ(complaintAboutMixture(out / "Plan-1.kdzx"), "");
            }
        }
    }
}
